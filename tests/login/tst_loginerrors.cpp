// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "loginfixture.h"
#include "testsupport/testcase.h"

using QXSC::ServiceError;
using ZelTest::accountList;
using ZelWebServiceControls::Login;

namespace {

/// The errors that reach the host, with their dynamic type kept.
struct ErrorTrap
{
    explicit ErrorTrap(Login *login)
    {
        QObject::connect(
            login, &Login::runtimeError, login,
            [this](const Zel::RuntimeError &error) { errors.emplace_back(error.clone()); });
    }

    std::vector<std::unique_ptr<Zel::RuntimeError>> errors;
};

QXSC::AccountCollectionPtr withNullRecord()
{
    auto list = std::make_shared<QXSC::AccountCollection>();
    list->add(std::make_shared<QXSC::AccountRecord>(QXSC::AccountRecord{QStringLiteral("A"), 1}));
    list->add(nullptr);
    return list;
}

} // namespace

/// Calls that fail, as opposed to calls that are answered with "no".
class tst_LoginErrors : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void reachTheHostOnceAndUnchanged_data();
    void reachTheHostOnceAndUnchanged();
    void ofTheSingleAccountLeaveTheAccountView();
    void leaveTheControlUsable();
    void keepPlainRunTimeErrorsPlain();
    void includeAnAnswerOfNothing();
    void includeAListWithANullRecord();
    void keepTheFormerAccountsInTheList();
    void showNumberAndTextWhenNobodyListens();
    void goToTheControlAround();
};

void tst_LoginErrors::reachTheHostOnceAndUnchanged_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("viewAfterwards");
    QTest::addColumn<int>("calls");
    QTest::newRow("authenticate") << "authenticate"
                                  << "credentials" << 1;
    QTest::newRow("getAccounts") << "getAccounts"
                                 << "credentials" << 2;
    QTest::newRow("setActiveAccount") << "setActiveAccount"
                                      << "accounts" << 3;
}

void tst_LoginErrors::reachTheHostOnceAndUnchanged()
{
    QFETCH(QString, operation);
    QFETCH(QString, viewAfterwards);
    QFETCH(int, calls);
    LoginFixture f;
    ErrorTrap trap(f.login);
    f.client.accounts = accountList({{QStringLiteral("A"), 1}, {QStringLiteral("B"), 2}});
    f.client.failNext(operation, ServiceError(ServiceError::Kind::ConnectionLost,
                                              QStringLiteral("The connection ended."),
                                              QStringLiteral("lost"), QStringLiteral("request 7")));
    f.bind();
    f.click("login");
    if (f.view() == QStringLiteral("accounts"))
        f.click("selectAccount");
    QCOMPARE(trap.errors.size(), size_t(1));
    const auto *error = dynamic_cast<ServiceError *>(trap.errors.front().get());
    QVERIFY(error);
    QCOMPARE(error->kind(), ServiceError::Kind::ConnectionLost);
    QCOMPARE(error->description(), QStringLiteral("The connection ended."));
    QCOMPARE(error->code(), QStringLiteral("lost"));
    QCOMPARE(error->details(), QStringLiteral("request 7"));
    QCOMPARE(f.trail.size(), calls + 1);
    QCOMPARE(f.trail.constLast(),
             QStringLiteral("error %1 | %2").arg(error->number()).arg(viewAfterwards));
    QCOMPARE(f.view(), viewAfterwards);
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_LoginErrors::ofTheSingleAccountLeaveTheAccountView()
{
    LoginFixture f;
    f.client.failNext(QStringLiteral("setActiveAccount"), Zel::RuntimeError(5));
    f.bind();
    f.click("login");
    QCOMPARE(f.trail.size(), 4);
    QCOMPARE(f.trail.constLast(), QStringLiteral("error 5 | accounts"));
    f.click("selectAccount");
    QCOMPARE(f.trail.constLast(), QStringLiteral("Success | neither view"));
}

void tst_LoginErrors::leaveTheControlUsable()
{
    LoginFixture f;
    f.client.failNext(QStringLiteral("authenticate"),
                      ServiceError(ServiceError::Kind::TimedOut, QStringLiteral("No answer.")));
    f.bind();
    f.typeCredentials();
    f.click("login");
    QCOMPARE(f.login->Password(), QStringLiteral("s3cret"));
    QVERIFY(f.child("login")->isEnabled());
    QCOMPARE(f.login->cursor().shape(), Qt::ArrowCursor);
    f.click("login");
    QCOMPARE(f.trail.constLast(), QStringLiteral("Success | neither view"));
}

void tst_LoginErrors::keepPlainRunTimeErrorsPlain()
{
    LoginFixture f;
    ErrorTrap trap(f.login);
    f.client.failNext(QStringLiteral("authenticate"),
                      Zel::RuntimeError(70, QStringLiteral("Denied"), QStringLiteral("Probe")));
    f.bind();
    f.click("login");
    QCOMPARE(trap.errors.size(), size_t(1));
    const Zel::RuntimeError &error = *trap.errors.front();
    QVERIFY(!dynamic_cast<const ServiceError *>(&error));
    QCOMPARE(error.number(), 70);
    QCOMPARE(error.description(), QStringLiteral("Denied"));
    QCOMPARE(error.source(), QStringLiteral("Probe"));
}

void tst_LoginErrors::includeAnAnswerOfNothing()
{
    LoginFixture f;
    f.client.accounts = nullptr;
    f.bind();
    f.click("login");
    QCOMPARE(f.client.calls().size(), 2);
    QCOMPARE(f.trail.constLast(), QStringLiteral("error 91 | credentials"));
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_LoginErrors::includeAListWithANullRecord()
{
    LoginFixture f;
    f.client.accounts = withNullRecord();
    f.bind();
    f.click("login");
    QCOMPARE(f.client.calls().size(), 2);
    QCOMPARE(f.trail.constLast(), QStringLiteral("error 91 | credentials"));
}

void tst_LoginErrors::keepTheFormerAccountsInTheList()
{
    LoginFixture f;
    f.client.accounts = accountList({{QStringLiteral("A"), 1}, {QStringLiteral("B"), 2}});
    f.bind();
    f.click("login");
    f.login->Reset();
    f.client.accounts = nullptr;
    f.click("login");
    QCOMPARE(f.child<QComboBox>("accountsList")->count(), 2);
    QCOMPARE(f.view(), QStringLiteral("credentials"));
}

void tst_LoginErrors::showNumberAndTextWhenNobodyListens()
{
    ZelTest::RecordingClient client;
    ZelTest::MessageBoxDriver boxes;
    Login login;
    login.Init(&client, QStringLiteral("Stage"));
    login.show();
    client.failNext(QStringLiteral("authenticate"), Zel::RuntimeError(Zel::RuntimeError::Overflow));
    boxes.click(QMessageBox::Ok);
    QTest::mouseClick(login.findChild<QPushButton *>(QStringLiteral("login")), Qt::LeftButton);
    QCOMPARE(boxes.shown().size(), 1);
    QCOMPARE(boxes.shown().constFirst().text, QStringLiteral("Error 6: Overflow"));
}

void tst_LoginErrors::goToTheControlAround()
{
    ZelTest::RecordingClient client;
    Zel::Control outer;
    auto *login = new Login(&outer);
    QList<int> numbers;
    connect(&outer, &Zel::Control::runtimeError,
            [&numbers](const Zel::RuntimeError &error) { numbers << error.number(); });
    login->Init(&client, QStringLiteral("Stage"));
    outer.show();
    client.failNext(QStringLiteral("getAccounts"), Zel::RuntimeError(Zel::RuntimeError::Overflow));
    QTest::mouseClick(login->findChild<QPushButton *>(QStringLiteral("login")), Qt::LeftButton);
    QCOMPARE(numbers, QList<int>{6});
}

ZEL_TEST_MAIN(tst_LoginErrors)
#include "tst_loginerrors.moc"
