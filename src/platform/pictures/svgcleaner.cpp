// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/svgcleaner.h"

#include "platform/pictures/picturesize.h"
#include "platform/pictures/picturetexts.h"
#include "platform/pictures/svgattributes.h"
#include "platform/pictures/svguses.h"

#include <QGuiApplication>
#include <QSet>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace Zel {

namespace {

constexpr int MostDepth = 64;
constexpr int MostElements = 100'000;
constexpr qsizetype MostBytes = 16 * 1024 * 1024;

bool isSvgNamespace(QStringView uri)
{
    return uri.isEmpty() || uri == QLatin1String("http://www.w3.org/2000/svg");
}

bool isText(const QString &element)
{
    static const QSet<QString> names{QStringLiteral("text"), QStringLiteral("tspan"),
                                     QStringLiteral("textArea"), QStringLiteral("tbreak")};
    return names.contains(element);
}

/// Elements Qt's renderer draws, or needs to draw others.
bool isDrawing(const QString &element)
{
    static const QSet<QString> names{QStringLiteral("svg"),     QStringLiteral("g"),
                                     QStringLiteral("defs"),    QStringLiteral("a"),
                                     QStringLiteral("switch"),  QStringLiteral("use"),
                                     QStringLiteral("path"),    QStringLiteral("rect"),
                                     QStringLiteral("circle"),  QStringLiteral("ellipse"),
                                     QStringLiteral("line"),    QStringLiteral("polyline"),
                                     QStringLiteral("polygon"), QStringLiteral("linearGradient"),
                                     QStringLiteral("stop"),    QStringLiteral("radialGradient"),
                                     QStringLiteral("image"),   QStringLiteral("solidColor"),
                                     QStringLiteral("style")};
    if (isText(element))
        return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr;
    return names.contains(element);
}

class Cleaner
{
public:
    Cleaner(const QByteArray &bytes, const PictureLimits &limits)
        : m_in(bytes)
        , m_out(&m_clean.document)
        , m_attributes(limits)
        , m_limits(limits)
    {
    }

    CleanSvg run()
    {
        copy();
        if (m_clean.problem.isEmpty() && m_in.hasError())
            refuse(m_in.error() == QXmlStreamReader::PrematureEndOfDocumentError
                       ? PictureTexts::cutOff()
                       : PictureTexts::damaged(m_in.errorString()));
        if (m_clean.problem.isEmpty() && !m_uses.measure(MostElements, MostDepth))
            refuse(PictureTexts::tooIntricate());
        m_clean.drawn = m_uses.drawn();
        return m_clean;
    }

private:
    void copy()
    {
        while (!m_in.atEnd() && m_clean.problem.isEmpty()) {
            switch (m_in.readNext()) {
            case QXmlStreamReader::StartElement:
                start();
                break;
            case QXmlStreamReader::EndElement:
                m_out.writeEndElement();
                m_uses.leave();
                --m_depth;
                break;
            case QXmlStreamReader::Characters:
                text();
                break;
            default:
                break;
            }
            if (m_clean.document.size() > MostBytes)
                refuse(PictureTexts::tooIntricate());
        }
    }

    void start()
    {
        const QString name = m_in.name().toString();
        const bool isRoot = m_depth == 0;
        if (!isSvgNamespace(m_in.namespaceUri()) || !isDrawing(name)) {
            skip();
            return;
        }
        if (++m_depth > MostDepth || ++m_elements > MostElements) {
            refuse(PictureTexts::tooIntricate());
            return;
        }
        m_inStyle = name == QLatin1String("style");
        m_out.writeStartElement(name);
        if (isRoot)
            writeRoot();
        const SvgAttributes::Kept kept = m_attributes.keep(name, m_in.attributes());
        m_out.writeAttributes(kept.attributes);
        m_uses.enter(kept.id, kept.used);
        if (!kept.problem.isEmpty())
            refuse(kept.problem);
    }

    void writeRoot()
    {
        m_out.writeDefaultNamespace(QStringLiteral("http://www.w3.org/2000/svg"));
        m_out.writeNamespace(QStringLiteral("http://www.w3.org/1999/xlink"),
                             QStringLiteral("xlink"));
        const SvgFrame frame(m_in.attributes());
        m_clean.size = frame.size;
        if (frame.size.isEmpty())
            refuse(PictureTexts::noSize());
        else if (!isPlausible(frame.size))
            refuse(PictureTexts::tooManyPixels(frame.size.toSize()));
        m_out.writeAttribute(QStringLiteral("viewBox"), frame.viewBoxText());
    }

    /// Leaves an element and everything in it out.
    void skip()
    {
        int depth = 1;
        while (depth > 0 && !m_in.atEnd()) {
            m_in.readNext();
            if (m_in.isStartElement())
                ++depth;
            else if (m_in.isEndElement())
                --depth;
        }
    }

    void text()
    {
        if (m_depth == 0)
            return;
        // A style sheet may ask for others.
        if (m_inStyle && (m_in.text().contains(QLatin1Char('@')) || m_in.text().size() > 100'000))
            return;
        m_out.writeCharacters(m_in.text().toString());
    }

    void refuse(const QString &problem) { m_clean.problem = problem; }

    CleanSvg m_clean;
    QXmlStreamReader m_in;
    QXmlStreamWriter m_out;
    SvgAttributes m_attributes;
    SvgUses m_uses;
    const PictureLimits &m_limits;
    int m_depth = 0;
    int m_elements = 0;
    bool m_inStyle = false;
};

} // namespace

CleanSvg cleanSvg(const QByteArray &bytes, const PictureLimits &limits)
{
    return Cleaner(bytes, limits).run();
}

} // namespace Zel
