#include "Markdown/InlineEncoding.h"
#include "Markdown/InlineMarkdown.h"
#include "Markdown/MarkdownBlockParser.h"
#include "Markdown/MarkdownProperties.h"
#include "Markdown/MarkdownTitle.h"

#include <QStringList>
#include <gtest/gtest.h>

#include <random>
#include <thread>

using namespace Talvo;

namespace {

/// Documents put together at random from what the dialect is made of.
class RandomDocuments
{
public:
    explicit RandomDocuments(unsigned seed)
        : m_random(seed)
    {
    }

    QString next()
    {
        QString text;
        const int parts = 1 + static_cast<int>(m_random() % 40);
        for (int i = 0; i < parts; ++i) {
            text += m_parts[static_cast<qsizetype>(m_random() % std::size_t(m_parts.size()))];
        }
        return text;
    }

private:
    std::mt19937 m_random;
    QStringList m_parts =
        QString::fromUtf8(
            "\n~\n~\n~\n\n~\r\n~ ~  ~\t~a~kelime~ığüşöç~😀~e\u0301~\u0301~\u200D~\u2003~\u00A0~"
            "# ~## ~- ~* ~+ ~1. ~-2.~99999999999999999999. ~---~***~|~|~|---|~:--:|~> ~```~    ~"
            "*~**~_~__~`~``~[~]~(~)~![~](~](u)~<~>~<b>~</b>~<br/>~<!-- c -->~&amp;~&~&Tab;~&#x41;~"
            "\\~\\\\~\\\n~https://e.x/a~www.e.x~me@e.x~mailto:~\"t\"~'~!~.~:~//~@~<http://"
            "a>~\u2028~"
            "\v~\f~\r~\uFEFF~[r]: /u")
            .split(u'~') +
        QStringList{QStringLiteral("~"), QStringLiteral("~~"), QString(QChar(0)),
                    QString(QChar(0xD83D))};
};

} // namespace

TEST(MarkdownProperties, holdForRandomDocuments)
{
    RandomDocuments documents(20);
    for (int i = 0; i < 4000; ++i) {
        const QString source = documents.next();
        const auto blocks = parseBlocks(source);
        EXPECT_EQ(violation(blocks, source), "") << source.toStdString();
        EXPECT_EQ(parseBlocks(source), blocks) << source.toStdString();
        const auto text = inlineText(source);
        EXPECT_EQ(violation(text, source), "") << source.toStdString();
        EXPECT_EQ(inlineText(source), text) << source.toStdString();
        EXPECT_TRUE(visibleMarkdownText(source).has_value()) << source.toStdString();
    }
}

// What needs no interpreter is found without it: the answer has to be the interpreter's.
TEST(MarkdownProperties, plainTextIsWhatTheInterpreterMakesOfIt)
{
    RandomDocuments documents(21);
    int plain = 0;
    for (int i = 0; i < 20'000; ++i) {
        const QString source = documents.next().remove(QChar::ByteOrderMark).left(12);
        AttributedString expected = inlineText(source);
        if (source.isEmpty() || expected.runs.size() != 1 || !InlineEncoding::isPlain(source)) {
            continue;
        }
        ++plain;
        // The escaped star makes the whole text go through the interpreter.
        expected.text += QStringLiteral(" *");
        expected.runs[0].length += 2;
        EXPECT_EQ(inlineText(source + QStringLiteral(" \\*")), expected) << source.toStdString();
    }
    EXPECT_GT(plain, 1000);
}

namespace {

struct Results
{
    std::vector<std::vector<MarkdownBlock>> blocks;
    std::vector<QString> titles;

    friend bool operator==(const Results &, const Results &) = default;
};

Results resultsOf(const QStringList &documents)
{
    Results results;
    for (const QString &document : documents) {
        results.blocks.push_back(parseBlocks(document));
        results.titles.push_back(visibleMarkdownText(document).value_or(QString()));
    }
    return results;
}

} // namespace

TEST(MarkdownProperties, threadsDoNotDisturbEachOther)
{
    RandomDocuments random(22);
    QStringList documents;
    for (int i = 0; i < 1500; ++i) {
        // Much of what only the extensions understand.
        documents += random.next() + QStringLiteral(" ~~a~~ https://e.x www.e.x ~b~ me@e.x");
    }
    const Results alone = resultsOf(documents);
    for (const std::size_t count : {2u, 4u}) {
        std::vector<Results> results(count);
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < count; ++i) {
            threads.emplace_back(
                [&documents, &result = results[i]] { result = resultsOf(documents); });
        }
        for (auto &thread : threads) {
            thread.join();
        }
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_TRUE(results[i] == alone) << "thread " << i << " of " << count;
        }
    }
}
