// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// A test program whose functions are run one by one from outside; some of them must fail.

#include "testsupport/testcase.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTest>

class Warnings : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void warns() { qWarning("the lamp flickers"); }

    void warnsAtTheSecondTime_data()
    {
        QTest::addColumn<bool>("warning");
        QTest::newRow("quiet") << false;
        QTest::newRow("warning") << true;
    }

    void warnsAtTheSecondTime()
    {
        QFETCH(bool, warning);
        if (warning)
            qWarning("the lamp flickers");
    }

    void warnsWithAnAnnouncement()
    {
        QTest::ignoreMessage(QtWarningMsg, "the lamp flickers");
        qWarning("the lamp flickers");
    }

    void warnsOfWhatEveryTestMaySay()
    {
        qWarning("This plugin does not support propagateSizeHints()");
    }

    void warnsOfSomethingLikeIt()
    {
        qWarning("Sir: This plugin does not support propagateSizeHints()");
    }

    void isQuiet() { qDebug("the lamp is lit"); }

    void leavesFilesAtHome()
    {
        for (const auto location : {QStandardPaths::HomeLocation, QStandardPaths::AppConfigLocation,
                                    QStandardPaths::AppDataLocation}) {
            const QString folder = QStandardPaths::writableLocation(location);
            QVERIFY(QDir().mkpath(folder));
            QFile file(folder + QLatin1String("/trace"));
            QVERIFY(!file.exists());
            QVERIFY(file.open(QIODevice::WriteOnly));
            qDebug("trace %s", qPrintable(file.fileName()));
        }
    }
};

ZEL_TEST_MAIN(Warnings)
#include "warnings.moc"
