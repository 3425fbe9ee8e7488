// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assetmanagerfixture.h"
#include "testsupport/testcase.h"

#include <QPainter>

#include <cmath>

/// The icons of the kinds of assets: drawn for every size, readable on light and on dark ground.
class tst_AssetIcons : public ZelTest::TestCase
{
    Q_OBJECT

    static double luminance(const QColor &colour)
    {
        const auto linear = [](double channel) {
            return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
               0.0722 * linear(colour.blueF());
    }

    /// Contrast as the accessibility guidelines for the web compute it.
    static double contrast(const QColor &one, const QColor &other)
    {
        const double a = luminance(one);
        const double b = luminance(other);
        return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
    }

    static QImage onGround(const QImage &icon, const QColor &ground)
    {
        QImage shown(icon.size(), QImage::Format_RGB32);
        shown.fill(ground);
        QPainter(&shown).drawImage(0, 0, icon);
        return shown;
    }

    /// The share of pixels that stand out from the ground.
    static double readableShare(const QImage &icon, const QColor &ground)
    {
        const QImage shown = onGround(icon, ground);
        int readable = 0;
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x)
                readable += contrast(shown.pixelColor(x, y), ground) >= 3 ? 1 : 0;
        }
        return double(readable) / (shown.width() * shown.height());
    }

    static const QStringList &types()
    {
        static const QStringList names{"Image",     "Audio", "Video",    "XML",
                                       "Text",      "pdf",   "Document", "Presentation",
                                       "Animation", "Other", "Broken"};
        return names;
    }

private slots:

    void initTestCase()
    {
        // The icons come with the library.
        const ZelWebServiceControls::AssetManager manager;
    }

    void areDrawnForEverySize_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {16, 24, 32, 48, 96, 256})
            QTest::addRow("%d", size) << size;
    }

    void areDrawnForEverySize()
    {
        QFETCH(const int, size);
        QSet<QByteArray> different;
        for (const QString &type : types()) {
            const QImage icon = typeIcon(qPrintable(type), size);
            QCOMPARE(icon.size(), QSize(size, size));
            different << QByteArray(reinterpret_cast<const char *>(icon.constBits()),
                                    icon.sizeInBytes());
        }
        QCOMPARE(different.size(), types().size());
    }

    void areReadableOnLightAndDark_data()
    {
        QTest::addColumn<QString>("type");
        for (const QString &type : types())
            QTest::newRow(qPrintable(type)) << type;
    }

    void areReadableOnLightAndDark()
    {
        QFETCH(const QString, type);
        for (const int size : {16, 96}) {
            const QImage icon = typeIcon(qPrintable(type), size);
            QVERIFY(readableShare(icon, QColor(Qt::white)) > 0.08);
            QVERIFY(readableShare(icon, QColor(0x1b, 0x1e, 0x23)) > 0.08);
        }
    }
};

ZEL_TEST_MAIN(tst_AssetIcons)
#include "tst_asseticons.moc"
