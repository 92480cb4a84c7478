#include "core/update/NumericVersion.h"
#include "core/update/SecureURL.h"

#include <gtest/gtest.h>

namespace {

TEST(NumericVersionTest, AcceptsOneToFourNumbersOnly)
{
    // clang-format off
    const std::pair<QString, QList<qint64>> accepted[] = {{"1", {1}}, {"1.2.3.4", {1, 2, 3, 4}}, {"01.002", {1, 2}},
                                                          {"9223372036854775807", {9223372036854775807}}};
    // clang-format on
    for (const auto &[text, components] : accepted)
        EXPECT_EQ(NumericVersion::parse(text).value_or(*NumericVersion::parse(u"0")).components(), components)
            << qPrintable(text);
    for (const QString text : {"", "1.", ".1", "1..2", "1.2.3.4.5", "1.2a", " 1.2", "1.2 ", "+1",
                               "99999999999999999999", "\xef\xbc\x91.\xef\xbc\x92" /* full-width digits */})
        EXPECT_FALSE(NumericVersion::parse(text)) << qPrintable(text);
}

TEST(NumericVersionTest, MissingComponentsCountAsZero)
{
    using Row = std::tuple<const char *, const char *, bool>; // left < right?
    for (const auto &[left, right, less] :
         {Row{"1.0", "1.0.1", true}, Row{"1.0.0", "1.0", false}, Row{"1.0", "1.0.0", false}, Row{"1.9", "1.10", true},
          Row{"1.99.99.99", "2", true}})
        EXPECT_EQ(*NumericVersion::parse(QString(left)) < *NumericVersion::parse(QString(right)), less)
            << left << " " << right;
}

TEST(SecureURLTest, OnlyPlainHttpsAddresses)
{
    for (const char *text : {"https://example.com/tolvar.json", "HTTPS://example.com:443/m.json?channel=beta",
                             "https://example.com:65535/"})
        EXPECT_TRUE(secureURL(text)) << text;
    for (const char *text :
         {"http://example.com/m.json", "example.com/m.json", "https://user@example.com/", "https://example.com/m.json#",
          "https://example.com:0/", "https://example.com:65536/", "https:///m.json", "https://exa mple.com/"})
        EXPECT_FALSE(secureURL(text)) << text;
}

} // namespace
