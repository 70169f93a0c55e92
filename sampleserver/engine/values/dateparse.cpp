#include "engine/values/datetime.h"

#include <QStringList>

#include <vector>

namespace engine {

namespace {

/// One piece of the text: a run of digits, a run of letters, or a mark.
struct Piece {
    enum Kind { Digits, Word, Mark } kind;
    QString text;
    bool blankBefore = false;
    int number() const { return text.toInt(); }
};

std::vector<Piece> split(QStringView text) {
    std::vector<Piece> pieces;
    bool blank = false;
    for (const QChar c : text) {
        if (c.isSpace()) {
            blank = true;
            continue;
        }
        const auto kind = c >= u'0' && c <= u'9' ? Piece::Digits : c.isLetter() ? Piece::Word : Piece::Mark;
        const bool joins = !blank && !pieces.empty() && pieces.back().kind == kind && kind != Piece::Mark;
        if (joins) {
            pieces.back().text += c;
        } else {
            pieces.push_back({kind, QString(c), blank});
        }
        blank = false;
    }
    return pieces;
}

int monthOf(const QString& word) {
    for (int month = 1; month <= 12; ++month) {
        const QString name = monthName(month);
        if (name.compare(word, Qt::CaseInsensitive) == 0 ||
            name.left(3).compare(word, Qt::CaseInsensitive) == 0) {
            return month;
        }
    }
    return 0;
}

// CONVERT has no styles so high.
constexpr int firstFormatStyle = 1'000'000;

/// The orders of SET DATEFORMAT.
const QStringList& sessionOrders() {
    static const QStringList orders = QStringLiteral("mdy dmy ymd ydm myd dym").split(u' ');
    return orders;
}

class DateReader {
  public:
    DateReader(QStringView text, const DateForm& form) : m_pieces(split(text)), m_form(form) {}

    DateParse run(qint64* ticks) {
        while (m_at < m_pieces.size()) {
            if (!readDateOrTime()) return DateParse::Malformed;
        }
        if (!m_parts.date().isValid() || m_parts.year > 9999) return DateParse::OutOfRange;
        if (m_parts.hour > 23 || m_parts.minute > 59 || m_parts.second > 59) return DateParse::OutOfRange;
        *ticks = dateTimeTicks(m_parts) + m_extraTicks;
        return isDateTimeInRange(*ticks) ? DateParse::Done : DateParse::OutOfRange;
    }

  private:
    const Piece* peek(size_t offset = 0) const {
        return m_at + offset < m_pieces.size() ? &m_pieces[m_at + offset] : nullptr;
    }
    bool isMark(size_t offset, char16_t mark) const {
        const Piece* piece = peek(offset);
        return piece && piece->kind == Piece::Mark && piece->text == QChar(mark);
    }
    bool isDigits(size_t offset) const { return peek(offset) && peek(offset)->kind == Piece::Digits; }
    bool isWord(size_t offset, QLatin1String word) const {
        return peek(offset) && peek(offset)->text.compare(word, Qt::CaseInsensitive) == 0;
    }
    bool isHalfDay(size_t offset) const {
        return isWord(offset, QLatin1String("am")) || isWord(offset, QLatin1String("pm"));
    }

    bool readDateOrTime() {
        if (isDigits(0) && (isMark(1, u':') || isHalfDay(1))) return !m_hasTime && readTime();
        if (m_hasDate) return false;
        m_hasDate = true;
        if (isDigits(0) && (isMark(1, u'-') || isMark(1, u'/') || isMark(1, u'.'))) return readMarkedDate();
        if (isDigits(0) && (peek()->text.size() == 8 || peek()->text.size() == 6)) return readSolidDate();
        return readNamedDate();
    }

    /// Takes the digits at hand as a year: two digits mean 1950 to 2049.
    bool takeYear(const Piece& piece) {
        const int year = piece.number();
        if (piece.text.size() == 4) {
            m_parts.year = year;
        } else if (piece.text.size() <= 2) {
            m_parts.year = year < 50 ? 2000 + year : 1900 + year;
        } else {
            return false;
        }
        return true;
    }

    bool readSolidDate() {
        const QString text = m_pieces[m_at++].text;
        const qsizetype yearDigits = text.size() - 4;
        m_parts.month = text.mid(yearDigits, 2).toInt();
        m_parts.day = text.right(2).toInt();
        return takeYear({Piece::Digits, text.left(yearDigits)});
    }

    bool readMarkedDate() {
        const QString mark = m_pieces[m_at + 1].text;
        if (!isDigits(2) || !peek(3) || peek(3)->text != mark || !isDigits(4)) return false;
        QString order = m_form.order;
        // Four digits in front are the year, unless a style puts it elsewhere.
        const bool fixed = m_form.yearDigits != 0 && order != QLatin1String("mdy");
        if (m_pieces[m_at].text.size() == 4 && !fixed) order = u'y' + order.remove(u'y');
        const auto piece = [&](char16_t part) { return m_pieces[m_at + 2 * size_t(order.indexOf(part))]; };
        const Piece year = piece(u'y');
        const Piece month = piece(u'm');
        const Piece day = piece(u'd');
        if (month.text.size() > 2 || day.text.size() > 2) return false;
        if (m_form.yearDigits != 0 && year.text.size() != m_form.yearDigits) return false;
        m_parts.month = month.number();
        m_parts.day = day.number();
        const bool known = takeYear(year);
        m_at += 5;
        if (order.startsWith(u'y') && isWord(0, QLatin1String("T")) && !peek()->blankBefore) ++m_at;
        return known;
    }

    /// "Feb 3 2001", "February 3, 2001", "3 Feb 2001", "2001 Feb 3", "Feb 2001".
    bool readNamedDate() {
        int month = 0;
        std::vector<Piece> numbers;
        for (; m_at < m_pieces.size(); ++m_at) {
            const Piece& piece = m_pieces[m_at];
            if (isMark(0, u',')) continue;
            if (isDigits(0) && (isMark(1, u':') || isHalfDay(1))) break;
            if (piece.kind == Piece::Mark) return false;
            if (piece.kind == Piece::Digits) {
                numbers.push_back(piece);
            } else if (month != 0 || (month = monthOf(piece.text)) == 0) {
                return false;
            }
        }
        if (numbers.empty() || numbers.size() > 2) return false;
        if (month == 0) return numbers.size() == 1 && numbers[0].text.size() == 4 && takeYear(numbers[0]);
        m_parts.month = month;
        if (numbers.size() == 1) return numbers[0].text.size() == 4 && takeYear(numbers[0]);
        const bool yearFirst = numbers[0].text.size() == 4;
        m_parts.day = numbers[yearFirst ? 1 : 0].number();
        return takeYear(numbers[yearFirst ? 0 : 1]);
    }

    /// "4PM", "16:05", "16:05:06", "16:05:06.789", "16:05:06:789", each with AM or PM.
    bool readTime() {
        m_hasTime = true;
        m_parts.hour = m_pieces[m_at++].number();
        if (isMark(0, u':')) {
            if (!isDigits(1)) return false;
            m_parts.minute = m_pieces[m_at + 1].number();
            m_at += 2;
            if (isMark(0, u':')) {
                if (!isDigits(1)) return false;
                m_parts.second = m_pieces[m_at + 1].number();
                m_at += 2;
                if (!readFraction()) return false;
            }
        }
        if (!isHalfDay(0)) return true;
        const bool afternoon = isWord(0, QLatin1String("pm"));
        ++m_at;
        if (m_parts.hour > 12) return afternoon;
        m_parts.hour = m_parts.hour % 12 + (afternoon ? 12 : 0);
        return true;
    }

    bool readFraction() {
        const bool point = isMark(0, u'.');
        if (!point && !isMark(0, u':')) return true;
        if (!isDigits(1) || peek(1)->text.size() > 3) return false;
        const QString digits = point ? peek(1)->text.leftJustified(3, u'0') : peek(1)->text;
        // Rounded to a three-hundredth of a second; .999 is the next second.
        m_extraTicks = (digits.toInt() * 3 + 5) / 10;
        m_at += 2;
        return true;
    }

    std::vector<Piece> m_pieces;
    DateForm m_form;
    size_t m_at = 0;
    DateTimeParts m_parts;
    int m_extraTicks = 0;
    bool m_hasDate = false;
    bool m_hasTime = false;
};

}  // namespace

std::optional<DateForm> dateForm(int style) {
    if (style >= firstFormatStyle) return DateForm{.order = sessionOrders().value(style - firstFormatStyle)};
    static const QList<int> longYearFirst{20, 21, 120, 121, 126};
    if (longYearFirst.contains(style)) return DateForm{QStringLiteral("ymd"), 4};
    const int number = style % 100;
    if (style < 0 || style > 114 || number > 14) return std::nullopt;
    const int yearDigits = style < 100 ? 2 : 4;
    if (number == 1 || number == 10) return DateForm{QStringLiteral("mdy"), yearDigits};
    if (number == 3 || number == 4 || number == 5) return DateForm{QStringLiteral("dmy"), yearDigits};
    if (number == 2 || number == 11 || number == 12) return DateForm{QStringLiteral("ymd"), yearDigits};
    return DateForm{};
}

std::optional<int> dateFormatStyle(const QString& format) {
    const auto order = sessionOrders().indexOf(format.toLower());
    return order < 0 ? std::nullopt : std::optional(firstFormatStyle + static_cast<int>(order));
}

DateParse parseDateTime(QStringView text, qint64* ticks, const DateForm& form) {
    return DateReader(text, form).run(ticks);
}

}  // namespace engine
