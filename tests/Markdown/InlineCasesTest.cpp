#include "Markdown/InlineMarkdown.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

using namespace Talvo;

// Every row of inline-cases.json is one test, named after the row's id.

namespace {

struct InlineCase
{
    std::string id;
    QString input;
    AttributedString expected;
};

AttributedString::Styles stylesOf(const QJsonArray &names)
{
    using Style = AttributedString::Style;
    const std::map<QString, Style> known{
        {QStringLiteral("emphasis"), Style::emphasis},
        {QStringLiteral("strong"), Style::strong},
        {QStringLiteral("code"), Style::code},
        {QStringLiteral("html"), Style::html},
        {QStringLiteral("lineBreak"), Style::lineBreak},
        {QStringLiteral("strikethrough"), Style::strikethrough},
    };
    AttributedString::Styles styles;
    for (const auto &name : names) {
        styles |= known.at(name.toString());
    }
    return styles;
}

InlineCase caseOf(const QJsonObject &row)
{
    InlineCase result;
    result.id = row[u"id"].toString().toStdString();
    result.input = row[u"input"].toString();
    result.expected.text = row[u"text"].toString();
    qsizetype start = 0;
    for (const auto &value : row[u"runs"].toArray()) {
        const QJsonObject run = value.toObject();
        const qsizetype length = run[u"text"].toString().size();
        result.expected.runs.push_back({start, length, stylesOf(run[u"styles"].toArray()),
                                        run[u"link"].toString(), run[u"image"].toString(),
                                        run[u"title"].toString()});
        start += length;
    }
    return result;
}

std::vector<InlineCase> allCases()
{
    QFile file(QStringLiteral(INLINE_CASES_FILE));
    std::vector<InlineCase> cases;
    if (file.open(QIODevice::ReadOnly)) {
        for (const auto &row : QJsonDocument::fromJson(file.readAll()).array()) {
            cases.push_back(caseOf(row.toObject()));
        }
    }
    return cases;
}

std::string nameOf(const testing::TestParamInfo<InlineCase> &info)
{
    std::string name = info.param.id;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

class InlineCases : public testing::TestWithParam<InlineCase>
{
};

} // namespace

// Without a row there is no test, and gtest fails a parameterised suite that was never
// instantiated with a value.
TEST_P(InlineCases, textAndRuns)
{
    const AttributedString result = inlineText(GetParam().input);
    EXPECT_EQ(result.text.toStdString(), GetParam().expected.text.toStdString());
    ASSERT_EQ(result.runs.size(), GetParam().expected.runs.size());
    for (std::size_t i = 0; i < result.runs.size(); ++i) {
        const auto &run = result.runs[i];
        const auto &expected = GetParam().expected.runs[i];
        SCOPED_TRACE("run " + std::to_string(i));
        EXPECT_EQ(run.start, expected.start);
        EXPECT_EQ(run.length, expected.length);
        EXPECT_EQ(run.styles.toInt(), expected.styles.toInt());
        EXPECT_EQ(run.link.toStdString(), expected.link.toStdString());
        EXPECT_EQ(run.image.toStdString(), expected.image.toStdString());
        EXPECT_EQ(run.title.toStdString(), expected.title.toStdString());
    }
}

INSTANTIATE_TEST_SUITE_P(File, InlineCases, testing::ValuesIn(allCases()), nameOf);
