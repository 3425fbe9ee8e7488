// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/formula.h"

namespace ZelDataVisualization {

namespace {

constexpr qsizetype MostCharacters = 8'192;
constexpr int MostLevels = 64;
constexpr size_t MostArguments = 255;

using Node = std::unique_ptr<FormulaNode>;
using Kind = FormulaNode::Kind;

/// From the loosest operator to the tightest.
class FormulaParser
{
public:
    FormulaParser(QStringView text, bool isOpen)
        : m_text(text)
        , m_isOpen(isOpen)
    {
    }

    Node parse()
    {
        Node result = joined();
        skipBlanks();
        return m_at == m_text.size() ? std::move(result) : nullptr;
    }

private:
    void skipBlanks()
    {
        while (m_at < m_text.size() && m_text[m_at].isSpace())
            ++m_at;
    }

    bool take(QChar c)
    {
        skipBlanks();
        if (m_at >= m_text.size() || m_text[m_at] != c)
            return false;
        ++m_at;
        return true;
    }

    static Node pair(Kind kind, Node left, Node right)
    {
        if (!left || !right)
            return nullptr;
        Node result = std::make_unique<FormulaNode>(kind);
        result->parts.push_back(std::move(left));
        result->parts.push_back(std::move(right));
        return result;
    }

    static Node around(Kind kind, Node part)
    {
        if (!part)
            return nullptr;
        Node result = std::make_unique<FormulaNode>(kind);
        result->parts.push_back(std::move(part));
        return result;
    }

    Node joined()
    {
        // Whatever goes deeper comes through here; chains of operators make the tree deep too.
        if (++m_level > MostLevels)
            return nullptr;
        Node left = sum();
        while (left && take(u'&'))
            left = deeper(Kind::Join, std::move(left), sum());
        --m_level;
        return left;
    }

    Node sum()
    {
        Node left = product();
        for (;;) {
            if (take(u'+'))
                left = deeper(Kind::Add, std::move(left), product());
            else if (take(u'-'))
                left = deeper(Kind::Subtract, std::move(left), product());
            else
                return left;
        }
    }

    Node product()
    {
        Node left = power();
        for (;;) {
            if (take(u'*'))
                left = deeper(Kind::Multiply, std::move(left), power());
            else if (take(u'/'))
                left = deeper(Kind::Divide, std::move(left), power());
            else
                return left;
        }
    }

    Node power()
    {
        Node left = sign();
        while (take(u'^'))
            left = deeper(Kind::Power, std::move(left), sign());
        return left;
    }

    Node sign()
    {
        bool isNegative = false;
        for (;;) {
            if (take(u'-'))
                isNegative = !isNegative;
            else if (!take(u'+'))
                break;
        }
        Node result = value();
        while (result && take(u'%'))
            result = deeper(Kind::Percent, std::move(result), nullptr);
        return isNegative ? around(Kind::Negative, std::move(result)) : std::move(result);
    }

    Node deeper(Kind kind, Node left, Node right)
    {
        constexpr int MostOperators = 1'000;
        if (++m_operators > MostOperators)
            return nullptr;
        return kind == Kind::Percent ? around(kind, std::move(left))
                                     : pair(kind, std::move(left), std::move(right));
    }

    Node value()
    {
        skipBlanks();
        if (m_at >= m_text.size())
            return nullptr;
        const QChar c = m_text[m_at];
        if (take(u'(')) {
            Node inner = joined();
            return take(u')') ? std::move(inner) : nullptr;
        }
        if (c == u'"')
            return text();
        if ((c >= u'0' && c <= u'9') || c == u'.')
            return number();
        if (Node found = reference())
            return found;
        return call();
    }

    Node text()
    {
        Node result = std::make_unique<FormulaNode>(Kind::Text);
        for (++m_at; m_at < m_text.size(); ++m_at) {
            if (m_text[m_at] == u'"') {
                ++m_at;
                if (m_at >= m_text.size() || m_text[m_at] != u'"')
                    return result;
            }
            result->text += m_text[m_at];
        }
        return nullptr;
    }

    Node number()
    {
        const qsizetype from = m_at;
        const auto skipDigits = [this] {
            while (m_at < m_text.size() && m_text[m_at] >= u'0' && m_text[m_at] <= u'9')
                ++m_at;
        };
        skipDigits();
        if (m_at < m_text.size() && m_text[m_at] == u'.') {
            ++m_at;
            skipDigits();
        }
        if (m_at < m_text.size() && (m_text[m_at] == u'E' || m_text[m_at] == u'e')) {
            ++m_at;
            if (m_at < m_text.size() && (m_text[m_at] == u'-' || m_text[m_at] == u'+'))
                ++m_at;
            skipDigits();
        }
        bool isNumber = false;
        Node result = std::make_unique<FormulaNode>(Kind::Number);
        result->number = m_text.mid(from, m_at - from).toDouble(&isNumber);
        return isNumber ? std::move(result) : nullptr;
    }

    Node reference()
    {
        const std::optional<Reference> found =
            m_isOpen ? takeOpenReference(m_text, m_at) : takeRowColumnReference(m_text, m_at);
        if (!found)
            return nullptr;
        Node result = std::make_unique<FormulaNode>(Kind::Reference);
        result->reference = *found;
        return result;
    }

    Node call()
    {
        const qsizetype from = m_at;
        while (m_at < m_text.size() &&
               (m_text[m_at].isLetterOrNumber() || m_text[m_at] == u'.' || m_text[m_at] == u'_'))
            ++m_at;
        Node result = std::make_unique<FormulaNode>(Kind::Call);
        result->text = m_text.mid(from, m_at - from).toString().toUpper();
        if (result->text.isEmpty() || !take(u'('))
            return nullptr;
        if (take(u')'))
            return result;
        do {
            Node argument = joined();
            if (!argument || result->parts.size() >= MostArguments)
                return nullptr;
            result->parts.push_back(std::move(argument));
        } while (take(m_isOpen ? u';' : u','));
        return take(u')') ? std::move(result) : nullptr;
    }

    QStringView m_text;
    bool m_isOpen;
    qsizetype m_at = 0;
    int m_level = 0;
    int m_operators = 0;
};

/// COUNTIF(range,"key") with whatever there is in the key.
Node countOfKey(QStringView text)
{
    constexpr QStringView Name = u"COUNTIF(";
    constexpr QStringView End = u"\")";
    if (!text.startsWith(Name) || !text.endsWith(End))
        return nullptr;
    qsizetype at = Name.size();
    const std::optional<Reference> range = takeRowColumnReference(text, at);
    constexpr QStringView Between = u",\"";
    if (!range || text.mid(at, Between.size()) != Between ||
        at + Between.size() + End.size() > text.size())
        return nullptr;
    at += Between.size();
    Node result = std::make_unique<FormulaNode>(Kind::Call);
    result->text = QStringLiteral("COUNTIF");
    result->parts.push_back(std::make_unique<FormulaNode>(Kind::Reference));
    result->parts.back()->reference = *range;
    result->parts.push_back(std::make_unique<FormulaNode>(Kind::Text));
    result->parts.back()->text = text.mid(at, text.size() - End.size() - at).toString();
    return result;
}

} // namespace

std::unique_ptr<FormulaNode> parseFormula(QStringView text)
{
    if (text.size() > MostCharacters)
        return nullptr;
    constexpr QStringView Open = u"of:=";
    if (text.startsWith(Open))
        return FormulaParser(text.mid(Open.size()), true).parse();
    if (!text.startsWith(u'='))
        return nullptr;
    text = text.mid(1);
    Node result = FormulaParser(text, false).parse();
    return result ? std::move(result) : countOfKey(text);
}

} // namespace ZelDataVisualization
