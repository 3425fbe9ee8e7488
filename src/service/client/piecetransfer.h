// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/exchange.h"

#include <QMap>

#include <array>
#include <memory>

#include <curl/curl.h>

namespace QXSC {

/// The certificates a policy trusts, as one PEM text; read once for each file. The system's are
/// those Qt trusts, so that both roads trust the same.
class Authorities
{
public:
    /// Empty when the file of the policy holds none.
    QByteArray pem(const QString &caFile);

private:
    QMap<QString, QByteArray> m_known;
};

/// One piece on its way through libcurl, and its answer. Lives in one thread.
class PieceTransfer
{
public:
    PieceTransfer(const std::shared_ptr<Exchange> &exchange, Authorities &authorities);
    /// The handle must be out of every multi handle. Ends the exchange if nobody has.
    ~PieceTransfer();

    /// False when the exchange was ended instead of begun.
    bool isReady() const { return m_ready; }

    CURL *handle() const { return m_easy.get(); }

    bool isFinished() const { return m_exchange->isFinished(); }

    void finish(CURLcode result);

private:
    Q_DISABLE_COPY_MOVE(PieceTransfer)

    void setRequest();
    bool setTls(Authorities &authorities);
    void setProxy();
    template <typename Value>
    void set(CURLoption option, Value value);
    void addHeader(const QByteArray &line);
    QByteArray header(const char *name) const;

    static std::size_t read(char *to, std::size_t size, std::size_t count, void *self);
    static int seek(void *self, curl_off_t offset, int origin);
    static std::size_t write(char *from, std::size_t size, std::size_t count, void *self);
    static int moved(void *self, curl_off_t downTotal, curl_off_t down, curl_off_t upTotal,
                     curl_off_t up);

    std::shared_ptr<Exchange> m_exchange;
    std::unique_ptr<CURL, void (*)(CURL *)> m_easy;
    std::unique_ptr<curl_slist, void (*)(curl_slist *)> m_headers;
    std::array<char, CURL_ERROR_SIZE> m_errorText{};
    qint64 m_sent = 0;
    curl_off_t m_moved = -1;
    QByteArray m_body;
    bool m_ready = false;
    bool m_hasProxy = false;
    bool m_isTooLong = false;
};

} // namespace QXSC
