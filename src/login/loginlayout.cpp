// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The look of the sign-in control: its children, where they are and what the Enter key does.

#include "login/login.h"
#include "platform/widgets/taborder.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/twipsgeometry.h"

#include <QComboBox>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>
#include <limits>

namespace ZelWebServiceControls {

namespace {

// Twips.
constexpr int RowsTopWithAddress = 840;
constexpr int RowsTopAlone = 360;
constexpr int Margin = 120;
constexpr int SmallestRow = 480;
constexpr int RowGap = 90;
constexpr int WidestContent = 6600;
constexpr int NarrowestBox = 2100;

QFrame *makeFrame(QWidget *parent, const char *name)
{
    auto *frame = new QFrame(parent);
    frame->setObjectName(QLatin1String(name));
    frame->setFrameShape(QFrame::NoFrame);
    return frame;
}

QLabel *makeLabel(QWidget *parent, const char *name, const QString &text, QWidget *buddy)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(buddy);
    return label;
}

QLineEdit *makeBox(QWidget *parent, const char *name, const QString &accessibleName)
{
    auto *box = new QLineEdit(parent);
    box->setObjectName(QLatin1String(name));
    box->setAccessibleName(accessibleName);
    // What a host puts in comes back whole, however long it is.
    box->setMaxLength(std::numeric_limits<int>::max());
    return box;
}

bool isEnter(const QKeyEvent &event)
{
    return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) &&
           !(event.modifiers() & ~Qt::KeypadModifier);
}

double heightInTwips(const QWidget *widget)
{
    return Zel::twipsFromPixels(widget->sizeHint().height(), Zel::logicalDpi(widget));
}

double widthInTwips(const QWidget *widget)
{
    return Zel::twipsFromPixels(widget->sizeHint().width(), Zel::logicalDpi(widget));
}

double rowHeight(const QLineEdit *box)
{
    return std::max<double>(SmallestRow, heightInTwips(box) + RowGap);
}

/// A label on the left and its box on the right, both centred in a row that ends at `bottom`.
void placeRow(QLabel *label, QLineEdit *box, double bottom, double labelWidth, double width)
{
    const double height = rowHeight(box);
    const double boxHeight = heightInTwips(box);
    const double top = std::max(0.0, bottom - height);
    Zel::setTwipsGeometry(label, {Margin, top, labelWidth, height});
    Zel::setTwipsGeometry(box, {Margin + labelWidth + Margin, top + (height - boxHeight) / 2,
                                width - labelWidth - 3 * Margin, boxHeight});
}

void placeButton(QPushButton *button, double top, double width)
{
    const double buttonWidth = std::max(1500.0, widthInTwips(button));
    Zel::setTwipsGeometry(button,
                          {width - buttonWidth - Margin, top, buttonWidth, heightInTwips(button)});
}

} // namespace

void Login::build()
{
    m_loginFrame = makeFrame(this, "loginFrame");
    m_url = makeBox(m_loginFrame, "qxUrl", tr("Server address"));
    m_urlLabel = makeLabel(m_loginFrame, "urlLabel", tr("Server"), m_url);
    m_url->setToolTip(tr("The address of the service, for example https://events.example.org"));
    m_upFrame = makeFrame(m_loginFrame, "upFrame");
    m_userName = makeBox(m_upFrame, "qxUserName", tr("User name"));
    m_userLabel = makeLabel(m_upFrame, "Label1", tr("User Name"), m_userName);
    m_password = makeBox(m_upFrame, "qxPassword", tr("Password"));
    m_password->setEchoMode(QLineEdit::Password);
    m_passwordLabel = makeLabel(m_upFrame, "Label2", tr("Password"), m_password);
    m_login = new QPushButton(tr("Sign &In"), m_loginFrame);
    m_login->setObjectName(QStringLiteral("login"));
    m_login->setVisible(false);

    m_accountFrame = makeFrame(this, "selectAccountFrame");
    m_accounts = new QComboBox(m_accountFrame);
    m_accounts->setObjectName(QStringLiteral("accountsList"));
    m_accounts->setAccessibleName(tr("Account"));
    m_accounts->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_accountLabel = makeLabel(m_accountFrame, "accountsLabel", tr("Account"), m_accounts);
    m_selectAccount = new QPushButton(tr("&Continue"), m_accountFrame);
    m_selectAccount->setObjectName(QStringLiteral("selectAccount"));
    m_selectAccount->setToolTip(tr("Work in the chosen account"));
    m_accountFrame->setVisible(false);

    for (QWidget *widget : std::initializer_list<QWidget *>{m_url, m_userName, m_password, m_login,
                                                            m_accounts, m_selectAccount})
        widget->installEventFilter(this);
    Zel::setTabChain({m_url, m_userName, m_password, m_login, m_accounts, m_selectAccount});
    updateFocusProxy();
    arrange();
}

void Login::updateFocusProxy()
{
    // The Tab key stops at a control for the sake of its proxy, and would at a hidden one.
    QWidget *first = nullptr;
    if (!m_loginFrame->isHidden())
        first = m_showLoginURL ? m_url : m_userName;
    else if (!m_accountFrame->isHidden())
        first = m_accounts;
    // A host's tab order takes part only when this control says that it takes the focus, but a
    // control with a proxy would hand its own policy on to that.
    setFocusProxy(nullptr);
    setFocusPolicy(first ? Qt::StrongFocus : Qt::NoFocus);
    setFocusProxy(first);
}

bool Login::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !isEnter(*static_cast<QKeyEvent *>(event)))
        return Control::eventFilter(watched, event);
    const bool inCredentials = m_loginFrame->isAncestorOf(static_cast<QWidget *>(watched));
    QPushButton *button = inCredentials ? m_login : m_selectAccount;
    if (button->isHidden())
        return Control::eventFilter(watched, event);
    // The key ends here: the box would pass it on, and the default button of a dialog around this
    // control would sign in a second time. A slot of the host may delete the control in the click.
    if (!static_cast<QKeyEvent *>(event)->isAutoRepeat())
        button->click();
    return true;
}

QSize Login::sizeHint() const
{
    const double rows = RowsTopWithAddress + 2 * rowHeight(m_userName);
    const double height = rows + RowGap + heightInTwips(m_login) + Margin;
    const int dpi = Zel::logicalDpi(this);
    return QSize(Zel::pixelsFromTwips(WidestContent, dpi), Zel::pixelsFromTwips(height, dpi));
}

QSize Login::minimumSizeHint() const
{
    const double labels = std::max(
        {widthInTwips(m_urlLabel), widthInTwips(m_userLabel), widthInTwips(m_passwordLabel)});
    const int dpi = Zel::logicalDpi(this);
    return QSize(Zel::pixelsFromTwips(labels + NarrowestBox + 3 * Margin, dpi),
                 sizeHint().height());
}

void Login::resized()
{
    arrange();
}

void Login::arrange()
{
    const double whole = Zel::twipsFromPixels(width(), Zel::logicalDpi(this));
    const double content = std::min<double>(whole, WidestContent);
    const Zel::TwipsRect frame{(whole - content) / 2, 0, content,
                               Zel::twipsFromPixels(height(), Zel::logicalDpi(this))};
    Zel::setTwipsGeometry(m_loginFrame, frame);
    Zel::setTwipsGeometry(m_accountFrame, frame);

    const double labels = std::max(
        {widthInTwips(m_urlLabel), widthInTwips(m_userLabel), widthInTwips(m_passwordLabel)});
    const double row = rowHeight(m_userName);
    const double top = m_showLoginURL ? RowsTopWithAddress : RowsTopAlone;
    placeRow(m_urlLabel, m_url, RowsTopWithAddress, labels, content);
    Zel::setTwipsGeometry(m_upFrame, {0, top, content, 2 * row});
    placeRow(m_userLabel, m_userName, row, labels, content);
    placeRow(m_passwordLabel, m_password, 2 * row, labels, content);
    placeButton(m_login, top + 2 * row + RowGap, content);

    Zel::setTwipsGeometry(m_accountLabel, {Margin, RowsTopAlone, labels, row});
    const double listHeight = heightInTwips(m_accounts);
    Zel::setTwipsGeometry(m_accounts,
                          {Margin + labels + Margin, RowsTopAlone + (row - listHeight) / 2,
                           content - labels - 3 * Margin, listHeight});
    placeButton(m_selectAccount, RowsTopAlone + row + RowGap, content);
}

void Login::SetControlShowLoginURL(bool new_val)
{
    m_showLoginURL = new_val;
    m_urlLabel->setVisible(new_val);
    m_url->setVisible(new_val);
    updateFocusProxy();
    arrange();
}

void Login::applyBackColor()
{
    for (QWidget *widget :
         {static_cast<QWidget *>(this), static_cast<QWidget *>(m_loginFrame),
          static_cast<QWidget *>(m_upFrame), static_cast<QWidget *>(m_accountFrame)})
        Zel::applyBackground(widget, m_backColor);
}

void Login::appearanceChanged()
{
    // Also for a plain colour: the text on it has to stay readable on another palette.
    applyBackColor();
    arrange();
}

} // namespace ZelWebServiceControls
