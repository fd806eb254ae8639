// How the text of the log is broken for the view, and mapped back.
#include "ui/log_text.h"
#include "ui/text.h"

#include <QStringList>

#include <gtest/gtest.h>
#include <random>

namespace oxlade::test {
namespace {

QString between(const LogText& text, qsizetype viewFrom, qsizetype viewTo) {
    const qsizetype from = text.toText(viewFrom);
    return text.text().mid(from, text.toText(viewTo) - from);
}

TEST(LogText, NeverCutsASurrogatePair) {
    LogText text;
    text.append(toQString(std::string(LogText::longestBlock - 1, 'x') + "\U0001F600\U0001F600"));
    QString view;
    while (text.pending() > 0) {
        view += text.take(1);
        EXPECT_FALSE(view.back().isHighSurrogate()) << "between two pieces";
    }
    for (qsizetype i = 0; i + 1 < view.size(); ++i)
        EXPECT_EQ(view[i].isHighSurrogate(), view[i + 1].isLowSurrogate());
    EXPECT_EQ(between(text, 0, view.size()), text.text());
}

TEST(LogText, TheViewHasNoControlCharactersWhosePaintingIsSlow) {
    LogText text;
    const QString all = QStringLiteral("a\tb\x01\x1b[1m\x7f") + QChar::Null + QChar{0x85} + u'.';
    text.append(all);
    EXPECT_EQ(text.take(100), QStringLiteral("a\tb\u25AF\u25AF[1m\u25AF\u25AF\u25AF."));
    EXPECT_EQ(text.text(), all);
}

TEST(LogText, GivesBackEveryPartHoweverItIsTaken) {
    std::mt19937 random{4000};
    const auto upTo = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (int round = 0; round < 200; ++round) {
        LogText text;
        QString all, view;
        for (int piece = 0; piece < 10; ++piece) {
            QString part(upTo(3000), u'a');
            if (upTo(3) == 0) part += u'\n';
            all += part;
            text.append(part);
            const auto lines = upTo(2) == 0 ? LogText::Lines::each : LogText::Lines::packed;
            while (text.pending() > upTo(500)) view += text.take(1 + upTo(2000), lines);
        }
        view += text.take(all.size());
        if (all.endsWith(u'\n')) all.chop(1); // it goes with what follows it
        ASSERT_EQ(between(text, 0, view.size()), all);
        for (qsizetype at = 0; at <= all.size(); ++at) ASSERT_EQ(text.toText(text.toView(at)), at);
        for (const QString& line : view.split(u'\n')) ASSERT_LE(line.size(), LogText::longestBlock);
        const int from = upTo(static_cast<int>(view.size()) + 1);
        const int to = from + upTo(static_cast<int>(view.size()) - from + 1);
        EXPECT_EQ(between(text, 0, from) + between(text, from, to) + between(text, to, view.size()),
                  all);
    }
}

} // namespace
} // namespace oxlade::test
