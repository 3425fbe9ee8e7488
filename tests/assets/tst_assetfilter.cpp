// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assets/assetfilter.h"
#include "testsupport/testcase.h"

#include <QTest>

/// The filter text of the dialog in which assets are chosen.
class tst_AssetFilter : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void describesTheAllowedFormats_data()
    {
        QTest::addColumn<QString>("formats");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << ""
                              << "All Formats||All (*.*)|*.*|";
        QTest::newRow("two")
            << "jpg, wma "
            << "All Formats|*.jpg;*.wma|JPEG (.jpg)|*.jpg|Windows Media Audio (.wma)|*.wma|"
               "All (*.*)|*.*|";
        QTest::newRow("all known")
            << "jpg,bmp,avi,wmv,wma,asf,mov,ppt"
            << "All Formats|*.jpg;*.bmp;*.avi;*.wmv;*.wma;*.asf;*.mov;*.ppt|JPEG (.jpg)|*.jpg|"
               "Bitmap (.bmp)|*.bmp|Microsoft AVI (.avi)|*.avi|Windows Media Video (.wmv)|*.wmv|"
               "Windows Media Audio (.wma)|*.wma|Advanced Streaming Format (.asf)|*.asf|"
               "Quicktime (.mov)|*.mov|Microsoft PPT (.ppt)|*.ppt|All (*.*)|*.*|";
        QTest::newRow("others in upper case")
            << "png,Jpg"
            << "All Formats|*.png;*.Jpg|PNG (.png)|*.png|JPG (.Jpg)|*.Jpg|All (*.*)|*.*|";
        QTest::newRow("gap") << "a,,b"
                             << "All Formats|*.a;*.;*.b|A (.a)|*.a| (.)|*.|B (.b)|*.b|"
                                "All (*.*)|*.*|";
    }

    void describesTheAllowedFormats()
    {
        QFETCH(QString, formats);
        QTEST(ZelWebServiceControls::assetFilterText(formats), "text");
    }
};

ZEL_TEST_MAIN(tst_AssetFilter)
#include "tst_assetfilter.moc"
