// SPDX-License-Identifier: MIT
#include "tBenchCity.h"

#include <cmath>
#include <cstdio>
#include <cstring>

static void addFace(std::string& text, const int p[3][3], int major) {
    static const char* const axes[3] = {"[ 0 1 0 0 ] [ 0 0 -1 0 ]", "[ 1 0 0 0 ] [ 0 0 -1 0 ]",
                                        "[ 1 0 0 0 ] [ 0 -1 0 0 ]"};
    char line[256];
    snprintf(line, sizeof line, "( %d %d %d ) ( %d %d %d ) ( %d %d %d ) city/wall%d %s 0 0.5 0.5\n",
             p[0][0], p[0][1], p[0][2], p[1][0], p[1][1], p[1][2], p[2][0], p[2][1], p[2][2], major,
             axes[major]);
    text += line;
}

static void addBox(std::string& text, const int* mins, const int* maxs, int slant) {
    text += "{\n";
    for (int side = 0; side < 6; ++side) {
        const int axis = side / 2;
        const bool upper = side % 2 == 0;
        int p[3][3];
        for (auto& point : p) {
            memcpy(point, mins, sizeof point);
            point[axis] = upper ? maxs[axis] : mins[axis];
        }
        const int first = (axis + (upper ? 1 : 2)) % 3;
        const int second = (axis + (upper ? 2 : 1)) % 3;
        p[0][first] = maxs[first];
        p[2][second] = maxs[second];
        if (axis == 2 && upper)
            p[0][2] -= slant;
        addFace(text, p, axis);
    }
    text += "}\n";
}

std::string cityText(int brushes) {
    std::string text = "{\n\"classname\" \"worldspawn\"\n";
    std::string lamps;
    const int columns = int(std::ceil(std::sqrt(double(brushes))));
    const int step = std::max(16, 7800 / columns / 8 * 8);
    for (int i = 0; i < brushes; ++i) {
        const int x = -3900 + i % columns * step, y = -3900 + i / columns * step;
        const int height = 16 + i * 37 % 400;
        const int mins[3] = {x, y, 0}, maxs[3] = {x + step - 8, y + step - 8, height};
        addBox(text, mins, maxs, i % 3 == 0 ? 8 : 0);
        if (i % 20 == 0) {
            char lamp[128];
            snprintf(lamp, sizeof lamp,
                     "{\n\"classname\" \"light\"\n\"origin\" \"%d %d %d\"\n\"light\" \"300\"\n}\n",
                     x, y, height + 16);
            lamps += lamp;
        }
    }
    return text + "}\n" + lamps;
}

long residentKilobytes() {
    FILE* file = fopen("/proc/self/status", "r");
    char line[256];
    long kilobytes = 0;
    while (file && fgets(line, sizeof line, file)) {
        if (sscanf(line, "VmRSS: %ld", &kilobytes) == 1)
            break;
    }
    if (file)
        fclose(file);
    return kilobytes;
}
