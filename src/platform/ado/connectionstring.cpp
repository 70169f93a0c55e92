#include "platform/ado/connectionstring.h"

#include <algorithm>

namespace ado {

namespace {

bool needsBraces(const QString& value) {
    return value.contains(u';') || value.startsWith(u'{') || value.trimmed().size() != value.size();
}

QString inBraces(QString value) {
    value.replace(u'}', QStringLiteral("}}"));
    return u'{' + value + u'}';
}

bool isOneOf(const QString& keyword, std::initializer_list<QStringView> keywords) {
    return std::ranges::any_of(
        keywords, [&](QStringView one) { return one.compare(keyword, Qt::CaseInsensitive) == 0; });
}

}  // namespace

QString itemValue(const QString& value) {
    return needsBraces(value) ? inBraces(value) : value;
}

ConnectionString::ConnectionString(QString text) : m_text(std::move(text)) {
    parse();
}

void ConnectionString::parse() {
    m_items.clear();
    for (qsizetype position = 0; position < m_text.size();) {
        if (m_text[position] == u';') {
            ++position;
            continue;
        }
        Item item = parseItem(position);
        position = item.end;
        if (!item.keyword.isEmpty()) m_items.push_back(std::move(item));
    }
}

ConnectionString::Item ConnectionString::parseItem(qsizetype begin) const {
    Item item;
    item.begin = begin;
    const auto stop =
        std::find_if(m_text.cbegin() + begin, m_text.cend(), [](QChar c) { return c == u'=' || c == u';'; });
    item.end = stop - m_text.cbegin();
    if (stop == m_text.cend() || *stop == u';') return item;
    item.keyword = m_text.sliced(begin, item.end - begin).trimmed();
    item.valueBegin = item.end + 1;
    parseValue(item);
    return item;
}

void ConnectionString::parseValue(Item& item) const {
    qsizetype position = item.valueBegin;
    while (position < m_text.size() && m_text[position].isSpace())
        ++position;
    if (position < m_text.size() && m_text[position] == u'{') {
        item.braced = true;
        for (++position; position < m_text.size(); ++position) {
            if (m_text[position] == u'}') {
                if (position + 1 >= m_text.size() || m_text[position + 1] != u'}') break;
                ++position;
            }
            item.value += m_text[position];
        }
    }
    const qsizetype end = m_text.indexOf(u';', position);
    item.end = end < 0 ? m_text.size() : end;
    if (!item.braced) item.value = m_text.sliced(item.valueBegin, item.end - item.valueBegin).trimmed();
}

const ConnectionString::Item* ConnectionString::find(std::initializer_list<QStringView> keywords) const {
    const auto found =
        std::ranges::find_if(m_items, [&](const Item& item) { return isOneOf(item.keyword, keywords); });
    return found == m_items.end() ? nullptr : &*found;
}

std::optional<QString> ConnectionString::value(std::initializer_list<QStringView> keywords) const {
    const Item* item = find(keywords);
    return item ? std::optional(item->value) : std::nullopt;
}

void ConnectionString::setValue(std::initializer_list<QStringView> keywords, const QString& value) {
    if (const Item* item = find(keywords)) {
        m_text.replace(item->valueBegin, item->end - item->valueBegin,
                       item->braced ? inBraces(value) : itemValue(value));
        parse();
    } else {
        append(*keywords.begin(), value);
    }
}

void ConnectionString::prepend(QStringView keyword, const QString& value) {
    m_text.prepend(keyword.toString() + u'=' + itemValue(value) + u';');
    parse();
}

void ConnectionString::append(QStringView keyword, const QString& value) {
    if (!m_text.isEmpty() && !m_text.endsWith(u';')) m_text += u';';
    m_text += keyword.toString() + u'=' + itemValue(value);
    parse();
}

std::optional<QString> ConnectionString::takeHardToRead(QStringView keyword) {
    std::optional<QString> taken;
    for (auto item = m_items.rbegin(); item != m_items.rend(); ++item) {
        if (!item->braced || !item->value.contains(u'}') || !isOneOf(item->keyword, {keyword})) continue;
        if (!taken) taken = item->value;
        m_text.remove(item->begin, item->end - item->begin);
    }
    parse();
    return taken;
}

void ConnectionString::remove(std::initializer_list<QStringView> keywords) {
    for (auto item = m_items.rbegin(); item != m_items.rend(); ++item)
        if (isOneOf(item->keyword, keywords)) m_text.remove(item->begin, item->end + 1 - item->begin);
    parse();
}

void ConnectionString::normalize() {
    if (!m_items.empty() && m_items.back().braced && m_items.back().end == m_text.size()) m_text += u';';
    for (auto item = m_items.rbegin(); item != m_items.rend(); ++item)
        m_text.replace(item->begin, item->valueBegin - 1 - item->begin,
                       isOneOf(item->keyword, {u"PWD"}) ? item->keyword.toUpper() : item->keyword);
    parse();
}

}  // namespace ado
