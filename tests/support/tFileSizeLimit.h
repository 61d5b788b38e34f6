// SPDX-License-Identifier: MIT
// While it lives, no file grows past a few kilobytes: a disk that fills up in the midst of a save.
#pragma once

#include <csignal>
#include <sys/resource.h>

class cFileSizeLimit {
public:
    cFileSizeLimit() : m_handler(signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit small = {4096, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~cFileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        signal(SIGXFSZ, m_handler);
    }
    cFileSizeLimit(const cFileSizeLimit&) = delete;
    cFileSizeLimit& operator=(const cFileSizeLimit&) = delete;

private:
    rlimit m_before = {};
    void (*m_handler)(int);
};
