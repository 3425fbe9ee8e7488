// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/trustedfile.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSslCertificate>

namespace Studio {

TrustedFile::TrustedFile(QWidget *parent)
    : QWidget(parent)
    , m_name(new QLabel(this))
    , m_button(new QPushButton(this))
{
    m_name->setObjectName(QStringLiteral("trustedFileName"));
    m_name->setTextFormat(Qt::PlainText);
    m_button->setObjectName(QStringLiteral("trustedFileButton"));
    m_button->setFlat(true);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_name);
    row->addWidget(m_button);
    row->addStretch(1);
    connect(m_button, &QPushButton::clicked, this, &TrustedFile::press);
    setFile(QString());
}

void TrustedFile::setFile(const QString &path)
{
    constexpr int longestName = 200; // in pixels
    m_file = path;
    const QString name = QFileInfo(path).fileName();
    m_name->setText(tr("Also trusted: %1")
                        .arg(m_name->fontMetrics().elidedText(name, Qt::ElideMiddle, longestName)));
    m_name->setToolTip(QDir::toNativeSeparators(path));
    m_name->setVisible(!path.isEmpty());
    m_button->setText(path.isEmpty() ? tr("&Trust a certificate file…") : tr("S&top trusting"));
    m_button->setToolTip(
        path.isEmpty()
            ? tr("For a service whose certificate your company has issued itself: a file in PEM "
                 "form, from those who run the service")
            : tr("Trust only the certificate authorities of this computer"));
}

void TrustedFile::press()
{
    if (m_file.isEmpty()) {
        choose();
        return;
    }
    setFile(QString());
    emit changed(m_file);
}

void TrustedFile::choose()
{
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Trust a Certificate File"), QString(),
                                     tr("Certificates (*.pem *.crt *.cer);;All files (*)"));
    if (path.isEmpty())
        return;
    if (QSslCertificate::fromPath(path, QSsl::Pem).isEmpty()) {
        emit refused(tr("The file %1 holds no certificates in PEM form. Ask those who run the "
                        "service for one that does.")
                         .arg(QFileInfo(path).fileName()));
        return;
    }
    setFile(path);
    emit changed(path);
}

} // namespace Studio
