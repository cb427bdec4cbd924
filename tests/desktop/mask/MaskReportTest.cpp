// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/MaskReport.h"

#include "casefile/CaseFile.h"
#include "desktop/mask/ProtocolPages.h"
#include "framework/UserInput.h"
#include "res/resource.h"
#include "tests/desktop/DesktopFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <QAbstractTextDocumentLayout>
#include <QCryptographicHash>
#include <QFile>
#include <QImage>
#include <QMimeData>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextTable>

#include <cmath>
#include <limits>

namespace
{

class MaskReportTest : public test::DesktopTest
{
  protected:
    void Calculate(desktop::MaskWindow& mask)
    {
        Type("0,8");
        Press(Qt::Key_Return);
        EXPECT_EQ(Text(mask, IDC_BESCHL_VERZOEGERUNG), "7,85");
    }
    desktop::MaskReport& report = *new desktop::MaskReport(window, document, front);
    test::TemporaryFolder folder;
};

TEST_F(MaskReportTest, CopiesTextTableAndPictureAtOnce)
{
    desktop::MaskWindow& mask = Open(400);
    Calculate(mask);
    const std::unique_ptr<QMimeData> copied(report.ForClipboard(mask));
    EXPECT_TRUE(copied->text().contains("max. Verzögerug\t7,85\tm/s²"));
    EXPECT_TRUE(copied->html().contains("<td class=\"value\" align=\"right\">7,85</td>"));
    EXPECT_GT(qvariant_cast<QImage>(copied->imageData()).width(), 300);
}

TEST_F(MaskReportTest, WritesTheFormatsAndNamesTheCase)
{
    desktop::MaskWindow& mask = Open(400);
    Calculate(mask);
    document.Data().Title() = "Kreuzung";
    std::string saved;
    ASSERT_TRUE(casefile::CaseToJson(document.Data(), saved));
    const auto hash =
        QCryptographicHash::hash(QByteArray::fromStdString(saved), QCryptographicHash::Sha256).toHex().toStdString();
    for (const char* name : {"p.pdf", "p.html", "p.odt"})
        EXPECT_EQ(report.Save(mask, QString::fromStdString(folder.File(name))), "") << name;
    const std::string html = folder.Read("p.html");
    EXPECT_NE(html.find(hash), std::string::npos);
    EXPECT_NE(html.find("Kreuzung"), std::string::npos);
    EXPECT_NE(html.find("cos α"), std::string::npos) << "the formulas of the help page";
    EXPECT_EQ(folder.Read("p.pdf").substr(0, 5), "%PDF-");
    EXPECT_EQ(folder.Read("p.odt").substr(0, 4), "PK\x03\x04");
    EXPECT_NE(report.Save(mask, QString::fromStdString(folder.File("p.doc"))), "");
    EXPECT_NE(report.Save(mask, QString::fromStdString(folder.File("kein/p.pdf"))), "");
}

/// Whatever is the last line of a page: every text is laid out, below what stands before it, and no heading is alone.
TEST_F(MaskReportTest, NoPageBreakLosesText)
{
    ASSERT_TRUE(document.Open(QStringLiteral(TAVELIN_SOURCE_DIR "/examples/fussgaenger.json")));
    desktop::MaskWindow& mask = Open(487);
    mask.Act([&] { framework::Click(Control(mask, IDC_RECHNEN)); });
    const report::Protocol protocol = report.ProtocolOf(mask);
    ASSERT_FALSE(protocol.pictures.empty());
    ASSERT_FALSE(protocol.formulas.empty());
    for (const double height : {947.0, 899.5, 801.0, 702.25, 640.0}) {
        desktop::AsideWork work;
        const auto pages = desktop::ProtocolOnPages(protocol, QSizeF(642.0, height), work);
        const auto pageOf = [&](const QTextBlock& block) {
            const double top = pages->documentLayout()->blockBoundingRect(block).top() + block.layout()->lineAt(0).y();
            return static_cast<int>((top + 0.5) / height);
        };
        EXPECT_GE(pages->pageCount(), 4);
        int headings = 0;
        for (QTextBlock block = pages->begin(); block.isValid(); block = block.next()) {
            if (block.text().isEmpty())
                continue;
            const std::string text = block.text().toStdString();
            ASSERT_GT(block.layout()->lineCount(), 0) << text;
            if (block.blockFormat().headingLevel() == 0 || !block.next().isValid())
                continue;
            ++headings;
            EXPECT_EQ(pageOf(block), pageOf(block.next())) << text << ", page of " << height;
        }
        EXPECT_GE(headings, 7);
    }
}

/// The lines of a row's cells, from the first one's top to the last one's foot.
std::pair<double, double> ExtentOf(const QTextDocument& document, const QTextTable& table, int row)
{
    double top = std::numeric_limits<double>::max();
    double foot = 0.0;
    for (int column = 0; column < table.columns(); ++column) {
        const QTextTableCell cell = table.cellAt(row, column);
        for (QTextBlock block = cell.firstCursorPosition().block();
             block.isValid() && block.position() <= cell.lastPosition(); block = block.next()) {
            const double at = document.documentLayout()->blockBoundingRect(block).top();
            for (int i = 0; i < block.layout()->lineCount(); ++i) {
                const QTextLine line = block.layout()->lineAt(i);
                top = std::min(top, at + line.y());
                foot = std::max(foot, at + line.y() + line.naturalTextRect().height());
            }
        }
    }
    return {top, foot};
}

TEST_F(MaskReportTest, NoRowOfALongTableIsTornByAPageEnd)
{
    constexpr int kRows = 24;
    const auto label = [](int i) { // of one to four lines
        std::string text = "Größe " + std::to_string(i);
        for (int word = 0; word < i * 7 % 23; ++word)
            text += " mit Umlauten äöü";
        return text;
    };
    const auto cell = [](const std::string& text) { return report::TextLine{{text}}; };
    report::Protocol protocol;
    protocol.title = "Lange Tabelle";
    protocol.inputs.push_back({"Eingaben", {}});
    report::TextBlock table{report::TextBlock::Kind::table};
    for (int i = 0; i < kRows; ++i) {
        protocol.inputs[0].entries.push_back({label(i), std::to_string(i) + ",00", "m"});
        table.rows.push_back({cell(label(i)), cell("x" + std::to_string(i)), cell(label(i + 5))});
    }
    protocol.tables.push_back(table);
    for (const double height : {947.0, 640.0}) {
        desktop::AsideWork work;
        const auto pages = desktop::ProtocolOnPages(protocol, QSizeF(642.0, height), work);
        std::string text = pages->toPlainText().toStdString();
        int rows = 0;
        for (QTextFrame* part : pages->rootFrame()->childFrames()) {
            const auto* rowsOf = qobject_cast<QTextTable*>(part);
            if (rowsOf == nullptr)
                continue;
            double before = 0.0;
            for (int row = 0; row < rowsOf->rows(); ++row, ++rows) {
                const auto [top, foot] = ExtentOf(*pages, *rowsOf, row);
                ASSERT_LT(top, foot) << "row " << row << " is lost";
                EXPECT_GE(top, before - 1.0) << "row " << row << " lies on the one before";
                EXPECT_EQ(std::floor((top + 0.5) / height), std::floor((foot - 2.0) / height))
                    << "row " << row << " at " << top << " to " << foot << ", page of " << height;
                before = foot;
            }
        }
        EXPECT_GE(rows, 2 * kRows);
        for (int i = 0; i < kRows; ++i)
            EXPECT_NE(text.find(std::to_string(i) + ",00"), std::string::npos) << i;
    }
}

TEST_F(MaskReportTest, KeepsTheMessagesOfAMaskWithTheirAnswers)
{
    desktop::MaskWindow& mask = Open(459);
    InModal([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    front.ShowMessage(mask.Dialog(), {1000, framework::MessageKind::warning, "Geht nicht.", {}});
    InModal([](QWidget& box) { QTest::keyClick(&box, Qt::Key_N); });
    front.ShowMessage(mask.Dialog(), {1052, framework::MessageKind::question, "Löschen?", {}});
    InModal([](QWidget& box) { QTest::keyClick(&box, Qt::Key_N); });
    front.ShowMessage(mask.Dialog(), {1342, framework::MessageKind::question, "Weiter?", {}});
    // The question whether to clear says nothing of the results.
    EXPECT_EQ(report.ProtocolOf(mask).messages, (std::vector<std::string>{"Geht nicht.", "Weiter? – Antwort: Nein"}));
    EXPECT_TRUE(report.ProtocolOf(Open(400)).messages.empty());
}

} // namespace
