// SPDX-License-Identifier: MIT
// Handing out and taking back pick numbers.
#include "document/tPickPool.h"

#include "support/tConsole.h"

#include <algorithm>

static constexpr size_t WORD_BITS = 64;

cPickPool::cPickPool() : m_bits(size_t(LIMIT) / WORD_BITS) {}

static uint64_t bitOf(int index) {
    return uint64_t(1) << (size_t(index) % WORD_BITS);
}

static uint64_t& wordOf(std::vector<uint64_t>& bits, int index) {
    return bits[size_t(index) / WORD_BITS];
}

int cPickPool::takeNumber() {
    const auto isSet = [this](int index) { return (wordOf(m_bits, index) & bitOf(index)) != 0; };
    const auto set = [this](int index) { wordOf(m_bits, index) |= bitOf(index); };
    if (m_next == m_high) {
        if (!isSet(m_next - 1)) {
            set(m_next - 1);
            return m_next;
        }
        if (m_next == LIMIT) {
            Error("too many objects");
            return -1;
        }
        set(m_next);
        m_next = ++m_high;
        return m_next;
    }
    const int number = m_next;
    set(number - 1);
    // Upward to a clear bit, a word at a time where all are set.
    while (m_next < m_high && isSet(m_next - 1)) {
        const bool wordStart = size_t(m_next - 1) % WORD_BITS == 0;
        const bool full = wordStart && wordOf(m_bits, m_next - 1) == ~uint64_t(0);
        m_next = std::min(m_high, m_next + (full ? int(WORD_BITS) : 1));
    }
    return number;
}

int cPickPool::take(ePickKind kind, void* record) {
    const int number = takeNumber();
    if (number < 0)
        return number;
    if (m_targets.size() < size_t(number))
        m_targets.resize(size_t(number));
    m_targets[size_t(number) - 1] = {kind, record};
    return number;
}

void cPickPool::give(int number) {
    if (number < 1 || number > LIMIT)
        return;
    wordOf(m_bits, number - 1) &= ~bitOf(number - 1);
    if (m_targets.size() >= size_t(number))
        m_targets[size_t(number) - 1] = {};
    if (m_high == number)
        m_high = std::max(1, number - 1);
    m_next = std::min({m_next, number, m_high});
}

void cPickPool::clear() {
    std::fill(m_bits.begin(), m_bits.end(), 0);
    m_targets.clear();
}

cPickTarget cPickPool::target(int number) const {
    if (number < 1 || size_t(number) > m_targets.size())
        return {};
    return m_targets[size_t(number) - 1];
}
