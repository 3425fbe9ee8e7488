// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/repeatedfield.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <vector>

namespace Zel::Service {

namespace {

/// Reads a valid JSON text for nothing but the names in its objects.
class NameScan
{
public:
    explicit NameScan(const QByteArray &json)
        : m_json(json)
    {
    }

    std::optional<QString> run()
    {
        for (m_at = 0; m_at < m_json.size(); ++m_at) {
            switch (m_json.at(m_at)) {
            case '{':
            case '[':
                m_open.emplace_back();
                break;
            case '}':
            case ']':
                m_open.pop_back();
                break;
            case '"':
                if (const auto repeated = readText())
                    return repeated;
                break;
            default:
                break;
            }
        }
        return std::nullopt;
    }

private:
    /// Goes to the end of a text. A name is a text with a colon behind it.
    std::optional<QString> readText()
    {
        const qsizetype begin = m_at;
        bool isPlain = true;
        while (m_json.at(++m_at) != '"') {
            if (m_json.at(m_at) == '\\') {
                isPlain = false;
                ++m_at;
            }
        }
        qsizetype next = m_at + 1;
        while (next < m_json.size() && QByteArrayView(" \t\r\n").contains(m_json.at(next)))
            ++next;
        if (next == m_json.size() || m_json.at(next) != ':')
            return std::nullopt;
        const QByteArray quoted = m_json.mid(begin, m_at + 1 - begin);
        const QByteArray inside = quoted.sliced(1, quoted.size() - 2);
        const QString name =
            isPlain ? QString::fromUtf8(inside)
                    : QJsonDocument::fromJson('[' + quoted + ']').array().first().toString();
        QSet<QString> &names = m_open.back();
        if (names.contains(name))
            return name;
        names.insert(name);
        return std::nullopt;
    }

    const QByteArray &m_json;
    qsizetype m_at = 0;
    std::vector<QSet<QString>> m_open; ///< the names of each object and list around
};

} // namespace

std::optional<QString> repeatedField(const QByteArray &json)
{
    return NameScan(json).run();
}

} // namespace Zel::Service
