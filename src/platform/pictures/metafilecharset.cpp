// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/metafilecharset.h"

#include <iconv.h>

namespace Zel {

namespace {

const char *codePage(quint8 charset)
{
    switch (charset) {
    case 128:
        return "CP932";
    case 129:
        return "CP949";
    case 134:
        return "GBK";
    case 136:
        return "BIG5";
    case 161:
        return "CP1253";
    case 162:
        return "CP1254";
    case 163:
        return "CP1258";
    case 177:
        return "CP1255";
    case 178:
        return "CP1256";
    case 186:
        return "CP1257";
    case 204:
        return "CP1251";
    case 222:
        return "CP874";
    case 238:
        return "CP1250";
    default:
        return "CP1252";
    }
}

} // namespace

QString textOfCharset(QByteArrayView bytes, quint8 charset)
{
    const iconv_t converter = iconv_open("UTF-16LE", codePage(charset));
    if (converter == iconv_t(-1)) // NOLINT: iconv's way to say no
        return QString::fromLatin1(bytes);
    QString text(bytes.size() * 2, Qt::Uninitialized);
    char *in = const_cast<char *>(bytes.data()); // iconv's interface; it only reads
    size_t inLeft = size_t(bytes.size());
    char *out = reinterpret_cast<char *>(text.data());
    const size_t room = size_t(text.size()) * sizeof(QChar);
    size_t outLeft = room;
    while (inLeft > 0 && iconv(converter, &in, &inLeft, &out, &outLeft) == size_t(-1)) {
        if (inLeft == 0 || outLeft < 4)
            break;
        ++in;
        --inLeft;
    }
    iconv_close(converter);
    text.resize(qsizetype((room - outLeft) / sizeof(QChar)));
    return text;
}

} // namespace Zel
