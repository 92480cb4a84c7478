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

struct DescCase
{
    const char *name;
    QString typeName;
    // After the type name and the attachments; text and numbers only.
    QVariantList fields;
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

    static QDBusArgument serialized(const DescCase &row)
    {
        QDBusArgument argument;
        argument.beginStructure();
        argument << row.typeName << QVariantMap();
        for (const QVariant &field : row.fields) {
            if (field.metaType() == QMetaType::fromType<QString>())
                argument << field.toString();
            else
                argument << field.toUInt();
        }
        argument.endStructure();
        return argument;
    }
};

TEST_P(IBusEngineDescTest, ReadsWhatIsThereAndKeepsOddTypes)
{
    QDBusConnection receiver = QDBusConnection::sessionBus();
    Catcher catcher;
    ASSERT_TRUE(
        receiver.connect(QString(), path, interface, QStringLiteral("Desc"), &catcher, SLOT(receive(QDBusMessage))));

    // No type name stands for a value that is not a struct at all.
    const QVariant value = GetParam().typeName.isEmpty() ? QVariant(QStringLiteral("hangul"))
                                                         : QVariant::fromValue(serialized(GetParam()));
    const QVariant wrapped = QVariant::fromValue(QDBusVariant(value));
    QDBusMessage signal = QDBusMessage::createSignal(path, interface, QStringLiteral("Desc"));
    signal << wrapped << wrapped;
    QDBusConnection sender = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("sender"));
    ASSERT_TRUE(sender.send(signal));

    ASSERT_TRUE(spinUntil([&] { return catcher.received; }, 10000));
    QDBusConnection::disconnectFromBus(QStringLiteral("sender"));
    EXPECT_EQ(catcher.properties, GetParam().expected);
    EXPECT_EQ(catcher.name, GetParam().expectedName);
}

const QString engineDesc = QStringLiteral("IBusEngineDesc");

// Name, long name, description, language, license, author, icon, layout, rank.
QVariantList hangulFields(qsizetype index = -1, const QVariant &value = {})
{
    QVariantList fields{QStringLiteral("hangul"),      QStringLiteral("Hangul"), QStringLiteral("Korean Input Method"),
                        QStringLiteral("ko"),          QStringLiteral("GPL"),    QStringLiteral("Peng Huang"),
                        QStringLiteral("ibus-hangul"), QStringLiteral("kr"),     99u};
    if (index >= 0)
        fields[index] = value;
    return fields;
}

SourceProperties hangul(const std::function<void(SourceProperties &)> &edit = {})
{
    SourceProperties p;
    p.id = QStringLiteral("hangul");
    p.localizedName = QStringLiteral("Hangul");
    p.languages = QStringList{QStringLiteral("ko")};
    p.iconReference = QStringLiteral("ibus-hangul");
    p.symbol = QStringLiteral("KO");
    p.selectCapable = true;
    p.category = SourceProperties::keyboardCategory;
    if (edit)
        edit(p);
    return p;
}

INSTANTIATE_TEST_SUITE_P(
    IBusEngineDesc, IBusEngineDescTest,
    testing::Values(DescCase{"IconFileBecomesAFileURL", engineDesc, hangulFields(6, QStringLiteral("/usr/share/h.png")),
                             hangul([](SourceProperties &p) {
                                 p.iconReference = QVariant();
                                 p.iconURL = QUrl::fromLocalFile(QStringLiteral("/usr/share/h.png"));
                             }),
                             QStringLiteral("hangul")},
                    DescCase{"ItsOwnSymbolWins", engineDesc, hangulFields() << QString() << QStringLiteral("한"),
                             hangul([](SourceProperties &p) { p.symbol = QStringLiteral("한"); }),
                             QStringLiteral("hangul")},
                    DescCase{"NotAStruct", QString(), {}, std::nullopt, QString()}),
    ParamName());

} // namespace

#include "IBusEngineDescTest.moc"
