#pragma once

#include <QString>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "domain/Prompts.h"

namespace rk31::fuzz {

// A finding that is no crash: a property that must hold for every input.
#define RK31_FUZZ_CHECK(condition)                                                                 \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "property failed: %s (%s:%d)\n", #condition, __FILE__, __LINE__); \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

// Counts the messages and answers every question No, every dialog by closing it.
class QuietPrompts : public Prompts {
  public:
    void message(const QString&) override { ++messages; }
    bool question(const QString&) override { return false; }
    QString openFileName(const QString&, const QString&) override { return {}; }
    QString saveFileName(const QString&, const QString&, const QStringList&, int*) override {
        return {};
    }
    void runModal(QDialog&) override {}
    int messages = 0;
};

class NoPause : public Pause {
  public:
    void sleep(int) override {}
};

// Reads the input front to back; past its end every value is 0.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    template <typename T>
    T take() {
        T value{};
        const std::size_t n = std::min(sizeof(T), m_size - m_pos);
        std::memcpy(&value, m_data + m_pos, n);
        m_pos += n;
        return value;
    }
    // A float from raw bits now and then, so NaN, infinities and denormals come up, and
    // otherwise a value near the ranges the program works in.
    float real() {
        const auto kind = take<std::uint8_t>();
        if (kind % 4 == 0) {
            return take<float>();
        }
        return static_cast<float>(take<std::int16_t>()) / static_cast<float>(1 + kind % 16);
    }
    // The rest of the input as text.
    QString rest() {
        const QString text = QString::fromUtf8(reinterpret_cast<const char*>(m_data + m_pos),
                                               static_cast<qsizetype>(m_size - m_pos));
        m_pos = m_size;
        return text;
    }

  private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_pos = 0;
};

}  // namespace rk31::fuzz
