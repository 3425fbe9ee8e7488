// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/signinpage.h"

#include "login/login.h"
#include "studio/appearance.h"
#include "studio/card.h"
#include "studio/errorcenter.h"
#include "studio/settings.h"
#include "studio/tintedicon.h"

#include <QComboBox>
#include <QEvent>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace Studio {

using ZelWebServiceControls::Login;

namespace {

constexpr int CardWidth = 480;
constexpr int LogoSize = 48;
constexpr QRgb AlarmColor = 0xffc8372d;

QFont scaled(QFont font, qreal factor, QFont::Weight weight)
{
    font.setPointSizeF(font.pointSizeF() * factor);
    font.setWeight(weight);
    return font;
}

} // namespace

SignInPage::SignInPage(ErrorCenter &errors, Settings &settings, QWidget *parent)
    : QWidget(parent)
    , m_errors(errors)
    , m_settings(settings)
{
    setObjectName(QStringLiteral("signInPage"));
    build();
    returnToCredentials();
    m_login->setLoginURL(m_settings.server());
    m_login->setUserName(m_settings.userName());
    connect(m_login, &Login::Success, this, [this] {
        remember();
        say(QString(), false);
        emit signedIn();
    });
    connect(m_login, &Login::Failure, this, [this] {
        say(tr("The service did not accept this user name and password. Check both and try again."),
            true);
    });
    connect(m_login, &Login::runtimeError, this, [this](const Zel::RuntimeError &error) {
        say(QString(), false);
        m_errors.report(error, [this] {
            if (auto *button = m_login->findChild<QPushButton *>(QStringLiteral("login")))
                button->click();
        });
    });
    connect(m_back, &QPushButton::clicked, this, &SignInPage::returnToCredentials);
}

void SignInPage::build()
{
    m_card = makeCard();
    m_people = new QWidget(this);
    m_people->setObjectName(QStringLiteral("samplePeople"));
    m_people->hide();
    // Not aligned items: those ignore that a wrapped message needs height for its width.
    auto *column = new QVBoxLayout;
    column->addStretch(2);
    column->addWidget(m_card);
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
    auto *logo = new QLabel(card);
    logo->setPixmap(QIcon(QStringLiteral(":/studio/icons/studio.svg"))
                        .pixmap(QSize(LogoSize, LogoSize), devicePixelRatioF()));
    m_title = new QLabel(card);
    m_title->setObjectName(QStringLiteral("signInTitle"));
    m_title->setFont(scaled(font(), 1.6, QFont::DemiBold));
    m_subtitle = new QLabel(card);
    m_subtitle->setTextFormat(Qt::PlainText);
    m_subtitle->setObjectName(QStringLiteral("signInSubtitle"));
    m_login = new Login(card);
    m_login->setObjectName(QStringLiteral("signIn"));
    m_login->findChild<QWidget *>(QStringLiteral("selectAccountFrame"))->installEventFilter(this);
    m_message = new QLabel(card);
    m_message->setObjectName(QStringLiteral("signInMessage"));
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    m_message->hide();
    m_back = new QPushButton(tr("Sign in as somebody else"), card);
    m_back->setObjectName(QStringLiteral("signInBack"));
    m_back->setIcon(tintedIcon(QStringLiteral("back")));
    m_back->setFlat(true);
    m_back->hide();

    // The sign-in control insets its rows by as much.
    constexpr int Inset = 8;
    auto *heading = new QHBoxLayout;
    heading->setContentsMargins(Inset, 0, Inset, 0);
    heading->setSpacing(14);
    m_message->setContentsMargins(Inset, 0, Inset, 0);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(m_title);
    texts->addWidget(m_subtitle);
    heading->addWidget(logo);
    heading->addLayout(texts, 1);
    auto *column = new QVBoxLayout(card);
    column->setContentsMargins(28, 26, 28, 22);
    column->setSpacing(8);
    column->addLayout(heading);
    column->addWidget(m_login);
    column->addWidget(m_message);
    column->addWidget(m_back, 0, Qt::AlignLeft);
    return card;
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
    row->setSpacing(10);
    for (const SamplePerson &person : people) {
        auto *button = new QPushButton(
            QStringLiteral("%1\n%2").arg(person.displayName, person.note), m_people);
        button->setObjectName(QStringLiteral("samplePerson_") + person.userName);
        button->setToolTip(tr("Fill in %1 and the password").arg(person.userName));
        button->setMinimumHeight(button->fontMetrics().lineSpacing() * 2 + 18);
        button->setMinimumWidth((CardWidth - 20) / 3);
        connect(button, &QPushButton::clicked, this, [this, person] { fillIn(person); });
        row->addWidget(button);
    }
    column->addLayout(row);
    m_people->show();
    const bool known =
        std::any_of(people.begin(), people.end(), [this](const SamplePerson &person) {
            return person.userName == m_login->UserName();
        });
    if (m_login->UserName().isEmpty() || known)
        fillIn(people.constFirst());
    for (const SamplePerson &person : people) {
        if (person.userName == m_settings.userName())
            fillIn(person);
    }
}

void SignInPage::fillIn(const SamplePerson &person)
{
    returnToCredentials();
    m_login->setLoginURL(QString());
    m_login->setUserName(person.userName);
    m_login->setPassword(person.password);
    if (auto *button = m_login->findChild<QPushButton *>(QStringLiteral("login")))
        button->setFocus(Qt::OtherFocusReason);
}

void SignInPage::showStarting()
{
    say(tr("Starting the service on this computer…"), false);
}

void SignInPage::open(QXSC::ServiceClient *client, bool ownService)
{
    if (ownService)
        m_login->findChild<QLineEdit *>(QStringLiteral("qxUrl"))
            ->setPlaceholderText(tr("This computer"));
    say(QString(), false);
    m_login->Init(client, QStringLiteral("Studio"));
    QWidget *first = m_login->UserName().isEmpty()
                         ? m_login->findChild<QWidget *>(QStringLiteral("qxUserName"))
                         : m_login->findChild<QWidget *>(QStringLiteral("qxPassword"));
    if (!m_login->Password().isEmpty())
        first = m_login->findChild<QWidget *>(QStringLiteral("login"));
    if (first)
        first->setFocus(Qt::OtherFocusReason);
}

void SignInPage::returnToCredentials()
{
    m_login->Reset();
    setHeading(tr("Sign in to Studio"), tr("Your events, projects and audiences."));
    m_back->hide();
    say(QString(), false);
}

QString SignInPage::userName() const
{
    return m_login->UserName();
}

QString SignInPage::accountName() const
{
    return m_login->findChild<QComboBox *>(QStringLiteral("accountsList"))->currentText();
}

void SignInPage::say(const QString &text, bool isProblem)
{
    m_message->setText(text);
    m_message->setVisible(!text.isEmpty());
    m_messageIsProblem = isProblem;
    applyColors();
}

void SignInPage::accountsShown()
{
    m_back->show();
    const auto *accounts = m_login->findChild<QComboBox *>(QStringLiteral("accountsList"));
    setHeading(tr("Choose an account"), tr("Signed in as %1.").arg(m_login->UserName()));
    if (accounts->count() == 0)
        say(tr("This user has no account yet. Ask the owner of an account for an invitation, or "
               "sign in as somebody else."),
            true);
    else
        say(QString(), false);
}

void SignInPage::setHeading(const QString &title, const QString &subtitle)
{
    m_title->setText(title);
    m_subtitle->setText(subtitle);
}

void SignInPage::remember()
{
    m_settings.setServer(m_login->LoginURL());
    m_settings.setUserName(m_login->UserName());
    m_login->setPassword(QString());
    m_back->hide();
}

bool SignInPage::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show &&
        watched->objectName() == QLatin1String("selectAccountFrame"))
        accountsShown();
    return QWidget::eventFilter(watched, event);
}

void SignInPage::applyColors()
{
    const QPalette base = window()->palette();
    QPalette muted = base;
    muted.setColor(QPalette::WindowText, mutedText(base));
    m_subtitle->setPalette(muted);
    QPalette message = base;
    if (m_messageIsProblem)
        message.setColor(
            QPalette::WindowText,
            mixed(QColor(AlarmColor), base.color(QPalette::WindowText), isDark(base) ? 0.45 : 0.1));
    m_message->setPalette(message);
    m_login->setBackColor(Zel::valueFromColor(Card::ground(base)));
}

void SignInPage::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange)
        applyColors();
}

} // namespace Studio
