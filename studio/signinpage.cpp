// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/signinpage.h"

#include "login/login.h"
#include "studio/appearance.h"
#include "studio/card.h"
#include "studio/errorcenter.h"
#include "studio/settings.h"
#include "studio/tintedicon.h"
#include "studio/trustedfile.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace Studio {

using ZelWebServiceControls::Login;

namespace {

constexpr int CardWidth = 480;
constexpr int LogoSize = 48;
constexpr int PeopleGap = 10;
/// The sign-in control insets its rows by as much.
constexpr int Inset = 8;

} // namespace

SignInPage::SignInPage(ErrorCenter &errors, Settings &settings, QWidget *parent)
    : QWidget(parent)
    , m_errors(errors)
    , m_settings(settings)
{
    setObjectName(QStringLiteral("signInPage"));
    build();
    m_login->setLoginURL(m_settings.server());
    m_login->setUserName(m_settings.userName());
    returnToCredentials();
    connect(m_login, &Login::Success, this, &SignInPage::accepted);
    connect(m_login, &Login::Failure, this, &SignInPage::refused);
    connect(m_login, &Login::runtimeError, this, [this](const Zel::RuntimeError &error) {
        m_callFailed = true;
        say(QString(), false);
        m_errors.report(error, [this] { pressAgain(); });
    });
    // After the control's own connections: what it did with the click is done.
    connect(m_signIn, &QPushButton::clicked, this, [this] { accountAnswered(false); });
    connect(m_continue, &QPushButton::clicked, this, [this] { accountAnswered(true); });
    connect(m_back, &QPushButton::clicked, this, [this] {
        m_login->setPassword(QString());
        returnToCredentials();
    });
}

template <typename Widget>
Widget *SignInPage::part(const char *name) const
{
    return m_login->findChild<Widget *>(QLatin1String(name));
}

void SignInPage::build()
{
    QWidget *card = makeCard();
    m_people = new QWidget(this);
    m_people->setObjectName(QStringLiteral("samplePeople"));
    m_people->hide();
    // Not aligned items: those ignore that a wrapped message needs height for its width.
    auto *column = new QVBoxLayout;
    column->addStretch(2);
    column->addWidget(card);
    column->addSpacing(16);
    column->addWidget(m_people);
    column->addStretch(3);
    auto *row = new QHBoxLayout(this);
    row->addStretch(1);
    row->addLayout(column);
    row->addStretch(1);
    applyColors();
}

QWidget *SignInPage::makeCard()
{
    auto *card = new Card(this);
    card->setObjectName(QStringLiteral("signInCard"));
    card->setFixedWidth(CardWidth);
    m_login = new Login(card);
    m_login->setObjectName(QStringLiteral("signIn"));
    m_login->setAccessibleName(tr("Sign in"));
    m_server = part<QLineEdit>("qxUrl");
    m_user = part<QLineEdit>("qxUserName");
    m_password = part<QLineEdit>("qxPassword");
    m_signIn = part<QPushButton>("login");
    m_accountPart = part<QWidget>("selectAccountFrame");
    m_accounts = part<QComboBox>("accountsList");
    m_continue = part<QPushButton>("selectAccount");
    m_signIn->setDefault(true);
    m_continue->setDefault(true);
    m_accountPart->installEventFilter(this);
    m_message = new QLabel(card);
    m_message->setObjectName(QStringLiteral("signInMessage"));
    m_message->setContentsMargins(Inset, 0, Inset, 0);
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    m_message->hide();
    m_back = new QPushButton(tr("Sign in as somebody &else"), card);
    m_back->setObjectName(QStringLiteral("signInBack"));
    m_back->setIcon(tintedIcon(QStringLiteral("back")));
    m_back->setFlat(true);
    m_back->hide();
    makeTrustedFile(card);
    auto *column = new QVBoxLayout(card);
    column->setContentsMargins(28, 26, 28, 22);
    column->setSpacing(8);
    column->addLayout(makeHeading(card));
    column->addWidget(m_login);
    column->addWidget(m_message);
    column->addWidget(m_trusted);
    column->addWidget(m_back, 0, Qt::AlignLeft);
    return card;
}

void SignInPage::makeTrustedFile(QWidget *card)
{
    m_trusted = new TrustedFile(card);
    m_trusted->setObjectName(QStringLiteral("trustedFile"));
    m_trusted->setContentsMargins(Inset, 0, Inset, 0);
    m_trusted->setFile(m_settings.caFile());
    connect(m_trusted, &TrustedFile::changed, this, [this](const QString &path) {
        m_settings.setCaFile(path);
        say(QString(), false);
        showTrustedFile();
        emit trustedFileChanged(path);
    });
    connect(m_trusted, &TrustedFile::refused, this, [this](const QString &why) { say(why, true); });
    connect(m_server, &QLineEdit::textChanged, this, &SignInPage::showTrustedFile);
    showTrustedFile();
}

/// It means something only for a service elsewhere, whose address is entered beside it.
void SignInPage::showTrustedFile()
{
    const bool elsewhere = !server().isEmpty() || !m_trusted->file().isEmpty();
    m_trusted->setVisible(elsewhere && m_accountPart->isHidden());
}

QLayout *SignInPage::makeHeading(QWidget *card)
{
    auto *logo = new QLabel(card);
    logo->setPixmap(QIcon(QStringLiteral(":/studio/icons/studio.svg"))
                        .pixmap(QSize(LogoSize, LogoSize), devicePixelRatioF()));
    m_title = new QLabel(card);
    m_title->setObjectName(QStringLiteral("signInTitle"));
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.6);
    large.setWeight(QFont::DemiBold);
    m_title->setFont(large);
    m_subtitle = new QLabel(card);
    m_subtitle->setTextFormat(Qt::PlainText);
    m_subtitle->setObjectName(QStringLiteral("signInSubtitle"));
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(m_title);
    texts->addWidget(m_subtitle);
    auto *heading = new QHBoxLayout;
    heading->setContentsMargins(Inset, 0, Inset, 0);
    heading->setSpacing(14);
    heading->addWidget(logo);
    heading->addLayout(texts, 1);
    return heading;
}

void SignInPage::setServerHint(const QString &hint)
{
    m_server->setPlaceholderText(hint);
}

QString SignInPage::server() const
{
    return m_login->LoginURL().trimmed();
}

void SignInPage::setServer(const QString &address)
{
    m_login->setLoginURL(address);
}

void SignInPage::offerPeople(const QList<SamplePerson> &people)
{
    if (people.isEmpty())
        return;
    auto *column = new QVBoxLayout(m_people);
    column->setContentsMargins(0, 0, 0, 0);
    auto *caption =
        new QLabel(tr("This is the sample workspace. Sign in as one of its people:"), m_people);
    caption->setAlignment(Qt::AlignHCenter);
    column->addWidget(caption);
    auto *row = new QHBoxLayout;
    row->setSpacing(PeopleGap);
    for (const SamplePerson &person : people)
        row->addWidget(makePersonButton(person));
    column->addLayout(row);
    m_people->show();

    if (!server().isEmpty())
        return;
    const QString remembered = m_login->UserName();
    for (const SamplePerson &person : people) {
        if (remembered.isEmpty() || person.userName == remembered) {
            fillIn(person);
            return;
        }
    }
}

QPushButton *SignInPage::makePersonButton(const SamplePerson &person)
{
    auto *button = new QPushButton(m_people);
    // An ampersand in a name is no shortcut.
    const QString text = QStringLiteral("%1\n%2").arg(person.displayName, person.note);
    button->setText(QString(text).replace(QLatin1Char('&'), QLatin1String("&&")));
    button->setObjectName(QStringLiteral("samplePerson_") + person.userName);
    button->setAccessibleName(QStringLiteral("%1, %2").arg(person.displayName, person.note));
    button->setToolTip(tr("Fill in %1 and the password").arg(person.userName));
    button->setMinimumHeight(button->fontMetrics().lineSpacing() * 2 + 18);
    button->setMinimumWidth((CardWidth - 2 * PeopleGap) / 3);
    connect(button, &QPushButton::clicked, this, [this, person] { fillIn(person); });
    return button;
}

void SignInPage::fillIn(const SamplePerson &person)
{
    returnToCredentials();
    m_login->setLoginURL(QString());
    m_login->setUserName(person.userName);
    m_login->setPassword(person.password);
    takeFocus();
}

void SignInPage::setStarting(bool starting)
{
    say(starting ? tr("Starting the service on this computer…") : QString(), false);
}

void SignInPage::open(QXSC::ServiceClient *client)
{
    m_login->Init(client, QStringLiteral("Studio"));
    takeFocus();
}

void SignInPage::returnToCredentials()
{
    const bool leavesAccounts = !m_accountPart->isHidden();
    m_login->Reset();
    m_login->setMaximumHeight(QWIDGETSIZE_MAX);
    m_title->setText(tr("Sign in to Studio"));
    m_subtitle->setText(tr("Your events, projects and audiences."));
    m_back->hide();
    showTrustedFile();
    say(QString(), false);
    takeFocus();
    if (leavesAccounts)
        emit abandoned();
}

/// The keyboard goes to the first thing left to do.
void SignInPage::takeFocus()
{
    if (!isVisible())
        return;
    QWidget *next = m_signIn;
    if (m_login->UserName().isEmpty())
        next = m_user;
    else if (m_login->Password().isEmpty())
        next = m_password;
    next->setFocus(Qt::OtherFocusReason);
}

void SignInPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    takeFocus();
}

QString SignInPage::userName() const
{
    return m_login->UserName();
}

QString SignInPage::accountName() const
{
    return m_accounts->currentText();
}

void SignInPage::say(const QString &text, bool isProblem)
{
    m_message->setText(text);
    m_message->setVisible(!text.isEmpty());
    m_messageIsProblem = isProblem;
    applyColors();
    if (text.isEmpty())
        return;
    QAccessibleEvent event(m_message, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void SignInPage::refused()
{
    m_errors.clear();
    say(tr("The service did not accept this user name and password. Check both and try again."),
        true);
    m_password->selectAll();
    m_password->setFocus(Qt::OtherFocusReason);
}

void SignInPage::accountsShown()
{
    m_errors.clear();
    m_trusted->hide();
    m_back->show();
    // No room is left for the rows of the credentials, which are more.
    m_login->setMaximumHeight(m_continue->geometry().bottom() + Inset);
    m_subtitle->setText(tr("Signed in as %1.").arg(m_login->UserName()));
    if (m_accounts->count() == 0) {
        m_title->setText(tr("No account yet"));
        say(tr("This user has no account yet. Ask the owner of an account for an invitation, or "
               "sign in as somebody else."),
            true);
        return;
    }
    m_title->setText(tr("Choose an account"));
    say(QString(), false);
    m_accounts->setCurrentIndex(std::max(0, m_accounts->findData(m_lastAccount)));
}

void SignInPage::accountAnswered(bool byChoice)
{
    const bool failed = std::exchange(m_callFailed, false);
    const bool asked = byChoice || m_accounts->count() == 1; // a single one is taken by itself
    if (failed || !asked || m_accounts->count() == 0 || m_accountPart->isHidden())
        return;
    say(tr("The service does not let you work in this account. Ask its owner, or choose another "
           "one."),
        true);
}

void SignInPage::pressAgain()
{
    (m_accountPart->isHidden() ? m_signIn : m_continue)->click();
}

void SignInPage::accepted()
{
    m_settings.setServer(m_login->LoginURL());
    m_settings.setUserName(m_login->UserName());
    m_lastAccount = m_accounts->currentData();
    m_login->setPassword(QString());
    m_back->hide();
    say(QString(), false);
    emit signedIn();
}

bool SignInPage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_accountPart && event->type() == QEvent::Show && !event->spontaneous())
        accountsShown();
    return QWidget::eventFilter(watched, event);
}

void SignInPage::applyColors()
{
    const QPalette base = QApplication::palette();
    setOwnColor(m_subtitle, QPalette::WindowText, mutedText(base));
    setOwnColor(m_message, QPalette::WindowText,
                m_messageIsProblem ? alarmText(base) : base.color(QPalette::WindowText));
    m_login->setBackColor(Zel::valueFromColor(Card::ground(base)));
}

void SignInPage::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

} // namespace Studio
