#include "core/config/ConfigStore.h"
#include "support/Process.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

const QString worker = QStringLiteral(TOLVAR_WORKER);

std::unique_ptr<QProcess> startWorker(const QStringList &arguments)
{
    auto process = std::make_unique<QProcess>();
    process->start(worker, arguments);
    return process;
}

// Both writers append their own mark under the lock: the final identifier must
// hold every mark of both, so no edit was lost to an overlapping writer.
TEST(ConfigProcessTest, ConcurrentMutationsAllSurvive)
{
    QTemporaryDir home;
    const QString directory = home.filePath(QStringLiteral("Library/Application Support/Tolvar"));
    constexpr int each = 150;
    std::vector<std::unique_ptr<QProcess>> writers;
    for (const char *mark : {"a", "b", "c"})
        writers.push_back(
            startWorker({QStringLiteral("mutate"), directory, QLatin1String(mark), QString::number(each)}));
    for (auto &writer : writers)
        EXPECT_EQ(finish(*writer), 0) << writer->readAllStandardError().constData();

    const QString id = ConfigStore::loadFrom(directory)->sourceID.value_or(QString());
    EXPECT_EQ(id.size(), 3 * each);
    for (const QChar mark : {QLatin1Char('a'), QLatin1Char('b'), QLatin1Char('c')})
        EXPECT_EQ(id.count(mark), each) << "mark " << mark.toLatin1();
}

TEST(ConfigProcessTest, ReadersNeverSeeAPartialFile)
{
    QTemporaryDir home;
    const QString directory = home.filePath(QStringLiteral("Tolvar"));
    ASSERT_TRUE(ConfigStore::write(Config{}, directory));

    auto writerA = startWorker({QStringLiteral("write"), directory, QStringLiteral("400")});
    auto writerB = startWorker({QStringLiteral("write"), directory, QStringLiteral("400")});
    auto reader = startWorker({QStringLiteral("read"), directory, QStringLiteral("4000")});
    EXPECT_EQ(finish(*writerA), 0);
    EXPECT_EQ(finish(*writerB), 0);
    EXPECT_EQ(finish(*reader), 0) << "failed reads: " << reader->readAllStandardOutput().constData();
}

} // namespace
