// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/settings.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QSettings>
#include <QTest>

using Studio::Appearance;
using Studio::Settings;

class TestSettings : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Settings().reset();
    }

    void startEmpty()
    {
        const Settings settings;
        QVERIFY(settings.server().isEmpty());
        QVERIFY(settings.userName().isEmpty());
        QVERIFY(settings.windowGeometry().isEmpty());
        QVERIFY(settings.projectColumnWidths().isEmpty());
        QVERIFY(settings.projectType().isEmpty());
        QVERIFY(!settings.projectListBag().has_value());
        QCOMPARE(settings.appearance(), Appearance::System);
    }

    void areReadByTheNextStart()
    {
        fill();
        const Settings settings;
        QCOMPARE(settings.server(), QStringLiteral("https://media.example.org"));
        QCOMPARE(settings.userName(), QStringLiteral("Zoë, \"the first\"; 100%"));
        QCOMPARE(settings.windowGeometry(), QByteArray("\x01\x02\0\xff", 4));
        QCOMPARE(settings.projectColumnWidths(), (QList<double>{0, 1900.5, 3000}));
        QCOMPARE(settings.projectType(), QStringLiteral("webcast"));
        QCOMPARE(settings.projectListBag(), std::optional(QStringLiteral("<a b=\"c\">ä</a>\n")));
        QCOMPARE(settings.appearance(), Appearance::Dark);
    }

    void resetForgetsEverything()
    {
        fill();
        Settings().reset();
        startEmpty();
        QSettings raw(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("zel"),
                      QStringLiteral("studio"));
        QVERIFY(raw.allKeys().isEmpty());
    }

    void anEmptyBagIsNotNoBag()
    {
        Settings().setProjectListBag(QString());
        QCOMPARE(Settings().projectListBag(), std::optional(QString()));
    }

    void liveInTheConfigurationFolder()
    {
        fill();
        QVERIFY(QFile::exists(qEnvironmentVariable("XDG_CONFIG_HOME") +
                              QStringLiteral("/zel/studio.ini")));
    }

    void anUnknownAppearanceIsTheSystems()
    {
        QSettings raw(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("zel"),
                      QStringLiteral("studio"));
        raw.setValue(QStringLiteral("window/appearance"), QStringLiteral("purple"));
        raw.sync();
        QCOMPARE(Settings().appearance(), Appearance::System);
    }

private:
    static void fill()
    {
        Settings settings;
        settings.setServer(QStringLiteral("https://media.example.org"));
        settings.setUserName(QStringLiteral("Zoë, \"the first\"; 100%"));
        settings.setWindowGeometry(QByteArray("\x01\x02\0\xff", 4));
        settings.setProjectColumnWidths({0, 1900.5, 3000});
        settings.setProjectType(QStringLiteral("webcast"));
        settings.setProjectListBag(QStringLiteral("<a b=\"c\">ä</a>\n"));
        settings.setAppearance(Appearance::Dark);
    }
};

ZEL_TEST_MAIN(TestSettings)
#include "tst_settings.moc"
