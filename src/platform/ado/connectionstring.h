#pragma once

#include <QString>
#include <QStringView>

#include <initializer_list>
#include <optional>
#include <vector>

namespace ado {

/// An ODBC connection string: items "keyword=value" between semicolons, a value in braces where it holds one
/// of its own (a closing brace in it is doubled). Keywords compare without regard to case, blanks around
/// keywords and around values without braces do not count, and the first item of a keyword is the one that
/// counts (ODBC Programmer's Reference, SQLDriverConnect).
class ConnectionString {
  public:
    explicit ConnectionString(QString text);

    const QString& text() const { return m_text; }
    /// The value of the first item whose keyword is one of those given.
    std::optional<QString> value(std::initializer_list<QStringView> keywords) const;
    bool has(std::initializer_list<QStringView> keywords) const { return value(keywords).has_value(); }

    /// Replaces the value of the first item with one of the keywords, in its place and in braces where it
    /// was; a new item is put behind the others under the first keyword.
    void setValue(std::initializer_list<QStringView> keywords, const QString& value);
    /// Puts an item before or behind all others, the rest untouched.
    void prepend(QStringView keyword, const QString& value);
    void append(QStringView keyword, const QString& value);
    /// Takes out the items with the keyword that only hold in braces and have a closing one in them, which
    /// not every driver reads back as it was meant; gives the value of the last.
    std::optional<QString> takeHardToRead(QStringView keyword);

    /// Takes out every item with one of the keywords.
    void remove(std::initializer_list<QStringView> keywords);

    /// Writes the items so that a driver which reads them to the letter understands them: no blanks around a
    /// keyword, a semicolon behind a last value in braces; and "PWD" in capitals, by which the driver manager
    /// knows what its trace must not show.
    void normalize();

  private:
    struct Item {
        qsizetype begin = 0;  ///< of the keyword with the blanks before it
        qsizetype valueBegin = 0;
        qsizetype end = 0;  ///< of the value with the blanks behind it
        QString keyword;
        QString value;
        bool braced = false;
    };
    const Item* find(std::initializer_list<QStringView> keywords) const;
    void parse();
    Item parseItem(qsizetype begin) const;
    void parseValue(Item& item) const;

    QString m_text;
    std::vector<Item> m_items;
};

/// A value as an item holds it: as it stands, or in braces where it would not come back as it is.
QString itemValue(const QString& value);

/// What a connection string turns into on its way to the driver: the driver that plays "SQL Server" in the
/// place of that name, and what this driver's family needs or takes (driverfamilies.h). What the string or
/// its data source names itself stays.
QString driverText(const ConnectionString& string);

/// The string of an opened connection: with the items "SERVER=" and "WSID=" that the driver left out.
QString expandedText(const ConnectionString& string, const QString& machine);

}  // namespace ado
