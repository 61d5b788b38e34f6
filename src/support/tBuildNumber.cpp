// SPDX-License-Identifier: MIT
// The day count; leap days come in through the length of the year alone.
#include "support/tBuildNumber.h"

#include <cstdlib>
#include <strings.h>

static constexpr int DAYS_BEFORE_FIRST_BUILD = 41140;

// Days from the start of the year to the first of the month; February always has 28.
static int daysBeforeMonth(const char* month) {
    struct {
        const char* name;
        int days;
    } static const months[] = {{"Jan", 31}, {"Feb", 28}, {"Mar", 31}, {"Apr", 30},
                               {"May", 31}, {"Jun", 30}, {"Jul", 31}, {"Aug", 31},
                               {"Sep", 30}, {"Oct", 31}, {"Nov", 30}};
    int days = 0;
    for (const auto& m : months) {
        if (!strncasecmp(month, m.name, 3))
            break;
        days += m.days;
    }
    return days;
}

int buildNumberOf(const char* date) {
    const int day = atoi(date + 4);
    const int year = atoi(date + 7);
    return daysBeforeMonth(date) + day - 1 + int((year - 1901) * 365.25) - DAYS_BEFORE_FIRST_BUILD;
}

int buildNumber() {
    static const int number = buildNumberOf(__DATE__);
    return number;
}
