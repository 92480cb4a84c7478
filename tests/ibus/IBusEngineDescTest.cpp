// Engine descriptions as they arrive over D-Bus, odd ones included: each is
// sent across the private session bus, so that it is read from a real message
// exactly as IBus's replies are.
#include "platform/linux/IBusEngineDesc.h"

#include "support/ParamName.h"
#include "support/Spin.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <QUrl>

#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace {

const QString path = QStringLiteral("/app/tolvar/test");
const QString interface = QStringLiteral("app.tolvar.test");

class Catcher : public QObject
{
    Q_OBJECT
public:
    std::optional<SourceProperties> properties;
    QString name;
    bool received = false;

public slots:
    // Each reader gets its own copy of the value: a D-Bus argument is read only once.
    void receive(const QDBusMessage &message)
    {
        properties = IBusEngineDesc::properties(message.arguments().value(0));
        name = IBusEngineDesc::name(message.arguments().value(1));
        received = true;
    }
};

using Fields = std::function<void(QDBusArgument &)>;

struct DescCase
{
    const char *name;
    Fields fields;
    std::optional<SourceProperties> expected;
    QString expectedName;
};

class IBusEngineDescTest : public testing::TestWithParam<DescCase>
{
protected:
    void SetUp() override
    {
        if (!QDBusConnection::sessionBus().isConnected())
            GTEST_SKIP() << "needs the private session bus of scripts/private-session";
    }
};

TEST_P(IBusEngineDescTest, ReadsWhatIsThereAndKeepsOddTypes)
{
    QDBusConnection receiver = QDBusConnection::sessionBus();
    Catcher catcher;
    ASSERT_TRUE(
        receiver.connect(QString(), path, interface, QStringLiteral("Desc"), &catcher, SLOT(receive(QDBusMessage))));

    QDBusArgument value;
    GetParam().fields(value);
    const QDBusVariant wrapped(QVariant::fromValue(value));
    QDBusMessage signal = QDBusMessage::createSignal(path, interface, QStringLiteral("Desc"));
    signal << QVariant::fromValue(wrapped) << QVariant::fromValue(wrapped);
    QDBusConnection sender = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("sender"));
    ASSERT_TRUE(sender.send(signal));

    ASSERT_TRUE(spinUntil([&] { return catcher.received; }, 10000));
    QDBusConnection::disconnectFromBus(QStringLiteral("sender"));
    EXPECT_EQ(catcher.properties, GetParam().expected);
    EXPECT_EQ(catcher.name, GetParam().expectedName);
}

// The first fields of a serialized engine description, up to and including `count` after the header.
Fields desc(int count, const QVariantList &overrides = {}, const QString &typeName = QStringLiteral("IBusEngineDesc"))
{
    return [=](QDBusArgument &argument) {
        QVariantList values{
            QStringLiteral("hangul"),      QStringLiteral("Hangul"), QStringLiteral("Korean Input Method"),
            QStringLiteral("ko"),          QStringLiteral("GPL"),    QStringLiteral("Peng Huang"),
            QStringLiteral("ibus-hangul"), QStringLiteral("kr"),     99u};
        for (qsizetype i = 0; i < overrides.size(); ++i) {
            if (overrides.at(i).isValid())
                values[i] = overrides.at(i);
        }
        argument.beginStructure();
        argument << typeName << QVariantMap();
        for (int i = 0; i < count; ++i) {
            const QVariant &v = values.at(i);
            if (v.metaType() == QMetaType::fromType<QString>())
                argument << v.toString();
            else
                argument << v.toUInt();
        }
        argument.endStructure();
    };
}

SourceProperties hangul()
{
    SourceProperties p;
    p.id = QStringLiteral("hangul");
    p.localizedName = QStringLiteral("Hangul");
    p.languages = QStringList{QStringLiteral("ko")};
    p.iconReference = QStringLiteral("ibus-hangul");
    p.selectCapable = true;
    p.category = SourceProperties::keyboardCategory;
    return p;
}

template <typename Edit> SourceProperties hangulWith(Edit edit)
{
    SourceProperties p = hangul();
    edit(p);
    return p;
}

const QVariant keep;

INSTANTIATE_TEST_SUITE_P(
    IBusEngineDesc, IBusEngineDescTest,
    testing::Values(
        DescCase{"AsIBusSendsIt", desc(9), hangul(), QStringLiteral("hangul")},
        DescCase{"IconFileBecomesAFileURL", desc(9, {keep, keep, keep, keep, keep, keep, QStringLiteral("/usr/share/h.png")}),
                 hangulWith([](SourceProperties &p) {
                     p.iconReference = QVariant();
                     p.iconURL = QUrl::fromLocalFile(QStringLiteral("/usr/share/h.png"));
                 }),
                 QStringLiteral("hangul")},
        DescCase{"NoIcon", desc(9, {keep, keep, keep, keep, keep, keep, QString()}),
                 hangulWith([](SourceProperties &p) { p.iconReference = QVariant(); }), QStringLiteral("hangul")},
        DescCase{"NoLanguage", desc(9, {keep, keep, keep, QString()}),
                 hangulWith([](SourceProperties &p) { p.languages = QStringList(); }), QStringLiteral("hangul")},
        DescCase{"ShortDescriptionLacksTheRest", desc(1),
                 hangulWith([](SourceProperties &p) {
                     p.localizedName = QVariant();
                     p.languages = QVariant();
                     p.iconReference = QVariant();
                 }),
                 QStringLiteral("hangul")},
        DescCase{"NameOfAnotherType", desc(9, {7u}), hangulWith([](SourceProperties &p) { p.id = 7u; }), QString()},
        DescCase{"LongNameOfAnotherType", desc(9, {keep, 7u}),
                 hangulWith([](SourceProperties &p) { p.localizedName = 7u; }), QStringLiteral("hangul")},
        DescCase{"LanguageOfAnotherType", desc(9, {keep, keep, keep, 7u}),
                 hangulWith([](SourceProperties &p) { p.languages = 7u; }), QStringLiteral("hangul")},
        DescCase{"IconOfAnotherType", desc(9, {keep, keep, keep, keep, keep, keep, 7u}),
                 hangulWith([](SourceProperties &p) { p.iconReference = 7u; }), QStringLiteral("hangul")},
        DescCase{"AnotherSerializedType", desc(9, {}, QStringLiteral("IBusText")), std::nullopt, QString()},
        DescCase{"NotAStruct", [](QDBusArgument &a) { a << QStringLiteral("hangul"); }, std::nullopt, QString()},
        DescCase{"EmptyStruct",
                 [](QDBusArgument &a) {
                     a.beginStructure();
                     a << 0u;
                     a.endStructure();
                 },
                 std::nullopt, QString()}),
    ParamName());

} // namespace

#include "IBusEngineDescTest.moc"
