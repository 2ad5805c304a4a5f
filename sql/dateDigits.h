#pragma once

#include <QDateTime>
#include <QString>

#include <array>

/// The digits of a day and a time of day, written one after another without a text for each of their parts.
class DateDigits {
public:
    /// Whether the year of a day has no more than four digits, and no sign.
    static bool Holds(const QDate& day) { return day.isValid() && day.year() >= 0 && day.year() <= 9999; }

    /// Year, month and day. @param mark between them; none with u'\0'
    DateDigits& Day(const QDate& day, char16_t mark) {
        int year = 0;
        int month = 0;
        int dayOfMonth = 0;
        day.getDate(&year, &month, &dayOfMonth);
        return Parts(year, 4, month, dayOfMonth, mark);
    }
    /// Hours, minutes and seconds.
    DateDigits& Clock(const QTime& time, char16_t mark) {
        return Parts(time.hour(), 2, time.minute(), time.second(), mark);
    }
    /// Three numbers, the first in so many digits, the others in two.
    DateDigits& Parts(int first, int digits, int second, int third, char16_t mark) {
        Number(first, digits);
        Mark(mark);
        Number(second, 2);
        Mark(mark);
        Number(third, 2);
        return *this;
    }
    DateDigits& Mark(char16_t mark) {
        if (mark != u'\0') {
            m_text[m_size++] = mark;
        }
        return *this;
    }
    QStringView View() const { return {m_text.data(), static_cast<qsizetype>(m_size)}; }
    QString Text() const { return View().toString(); }

private:
    void Number(int number, int digits) {
        for (size_t at = m_size + static_cast<size_t>(digits); at-- > m_size; number /= 10) {
            m_text[at] = static_cast<char16_t>(u'0' + number % 10);
        }
        m_size += static_cast<size_t>(digits);
    }

    std::array<char16_t, 24> m_text{}; ///< a day and a time with all their marks are 20
    size_t m_size = 0;
};
