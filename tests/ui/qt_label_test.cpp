// Texts in their frames.
#include "tests/ui/program.h"
#include "ui/palette.h"
#include "ui/text.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QPainter>
#include <QStyleOptionButton>
#include <QTextDocument>

namespace oxlade::test {
namespace {

class CountsPaints final : public QObject {
  public:
    explicit CountsPaints(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::UpdateRequest || event->type() == QEvent::Paint) ++count;
        return false;
    }
    int count = 0;
};

/// What a label of that width shows of the text; no line is wider.
QStringList shown(const TextStyle& style, int width, std::string_view text) {
    QtLabel label{style, nullptr};
    label.resize(width, 32);
    label.setStringValue(text);
    EXPECT_EQ(label.text(), toQString(text));
    for (const QString& line : label.displayedLines())
        EXPECT_LE(label.fontMetrics().horizontalAdvance(line), width);
    return label.displayedLines();
}

TEST(QtLabel, AShortTextIsShownWholeAndWithoutMarkup) {
    for (const char* text : {"Ready", "<b>a</b> &amp; b&c"})
        EXPECT_EQ(shown({}, 300, text), QStringList{QString::fromUtf8(text)});
}

TEST(QtLabel, ALongTextEndsInAnEllipsis) {
    const QString line = shown({}, 60, "Flashing the MPC4000").join(u'\n');
    EXPECT_TRUE(line.startsWith(u'F') && line.endsWith(u'\u2026')) << line.toStdString();
}

TEST(QtLabel, ALongFileNameKeepsItsStartAndItsSize) {
    const auto text = "mpc4000_operating_system_v1.71_final.bin  \u00B7  3.0 MB";
    const QString line = shown({.truncation = Truncation::middle}, 190, text).join(u'\n');
    EXPECT_TRUE(line.startsWith(QStringLiteral("mpc4000")));
    EXPECT_TRUE(line.endsWith(QStringLiteral("\u00B7  3.0 MB")));
    EXPECT_TRUE(line.contains(u'\u2026'));
}

TEST(QtLabel, TwoLinesAreCutAfterTheSecondWithoutAnEllipsis) {
    const TextStyle style{.pixels = 12, .truncation = Truncation::twoLines};
    std::string words;
    for (int i = 0; i < 40; ++i) words += "word" + std::to_string(i) + " ";
    const QStringList lines = shown(style, 290, words);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(toQString(words).startsWith(lines.join(u' '))) << "broken at a space";
    const QStringList ofOneWord = shown(style, 290, std::string(300, 'w'));
    ASSERT_EQ(ofOneWord.size(), 2);
    EXPECT_GT(ofOneWord.at(0).size(), 10) << "broken anywhere";
}

TEST(QtLabel, PaintsTheDisplayedLinesLeftToRight) {
    const char* texts[] = {"fits",
                           "is much too long for the frame that it has",
                           "ОС v1.71  \u00B7  ",
                           "cut\nat a line end, and too long",
                           "cut\u2028at a separator",
                           "\u05E9\u05DC\u05D5\u05DD.bin  \u00B7  3 MB",
                           "\ttab",
                           "e\u0301"};
    constexpr QRect frame{0, 0, 120, 20};
    for (const auto truncation : {Truncation::tail, Truncation::middle})
        for (const auto alignment : {Qt::AlignLeft, Qt::AlignRight})
            for (const char* text : texts) {
                SCOPED_TRACE(text);
                QtLabel label{{.truncation = truncation, .alignment = alignment}, nullptr};
                label.setGeometry(frame);
                label.setStringValue(text);
                label.show();
                const QString shown = label.displayedLines().at(0);
                const auto painted = label.grab().toImage().convertToFormat(QImage::Format_RGB32);
                label.setStringValue({});
                QImage expected = label.grab().toImage().convertToFormat(QImage::Format_RGB32);
                // As Qt draws a line.
                QPainter painter{&expected};
                painter.setFont(label.font());
                painter.setPen(color(SemanticColor::labelColor, label.palette()));
                painter.setLayoutDirection(Qt::LeftToRight);
                const QFontMetrics metrics = painter.fontMetrics();
                const bool isRight = alignment == Qt::AlignRight;
                const int x = isRight ? frame.width() - metrics.horizontalAdvance(shown) : 0;
                painter.drawText(x, centredBaseline(frame, metrics), shown);
                painter.end();
                EXPECT_EQ(painted, expected);
            }
}

TEST(QtLabel, SettingWhatIsShownAlreadyPaintsNothing) {
    QtLabel label{{}, nullptr};
    label.resize(300, 18);
    label.show();
    label.setStringValue("Ready");
    QApplication::processEvents();
    CountsPaints paints{label};
    label.setStringValue("Ready");
    QApplication::processEvents();
    EXPECT_EQ(paints.count, 0);
    label.setStringValue("Writing OS");
    QApplication::processEvents();
    EXPECT_GT(paints.count, 0);
}

QString asShown(const QString& markup) {
    QTextDocument document;
    document.setHtml(markup);
    return document.toPlainText().remove(QChar{0x200B});
}

TEST(ToolTip, ShowsThePathAsItIs) {
    for (const QString& path :
         {QStringLiteral("/home/user/<b>bold</b>  two spaces/&amp; \"quoted\"/os.bin"),
          QStringLiteral("C:\\ a"), QStringLiteral("/%1.bin").arg(QString(300, u'x')),
          QStringLiteral("/\U0001F600\U0001F600/x"), QStringLiteral("/ends/")})
        EXPECT_EQ(asShown(toolTipMarkup(path)).toStdString(), path.toStdString());
}

TEST(ToolTip, OnlyOfALongPathCanBeWrapped) {
    const auto piece = QStringLiteral("/folder of nine");
    QTextDocument document;
    document.setHtml(toolTipMarkup(piece.repeated(100 / piece.size())));
    document.setTextWidth(300);
    EXPECT_GT(document.idealWidth(), 300);
    document.setHtml(toolTipMarkup(QStringLiteral("/%1/os.bin").arg(QString(400, u'x'))));
    document.setTextWidth(600);
    EXPECT_LE(document.idealWidth(), 600);
}

/// The column where the sign's ink begins.
int signStart(const QString& text, const QFont& font) {
    QImage image{100, 20, QImage::Format_RGB32};
    image.fill(Qt::white);
    QPainter painter{&image};
    painter.setFont(font);
    drawTabularDigits(painter, {0, 0, 100, 20}, text, Qt::AlignLeft);
    painter.end();
    const int from = tabularWidth(text.chopped(1), QFontMetrics{font});
    for (int x = from; x < image.width(); ++x)
        for (int y = 0; y < image.height(); ++y)
            if (image.pixelColor(x, y).lightness() < 128) return x;
    return -1;
}

TEST(TabularDigits, DoNotMoveTheSignAfterThem) {
    for (const char* family : {"Inter", "Noto Sans", "DejaVu Sans"}) {
        QFont font{QLatin1String{family}};
        font.setPixelSize(13);
        const int ones = signStart(QStringLiteral("11%"), font);
        EXPECT_GT(ones, 0);
        EXPECT_EQ(ones, signStart(QStringLiteral("88%"), font)) << family;
    }
}

const std::vector<const char*> detailKeys{"device.checking.detail", "device.failed.detail",
                                          "device.unknown.detail"};

/// Every text in its frame, with three fonts and in both languages.
class Fit : public ::testing::TestWithParam<const char*> {
  protected:
    Fit() : before{QApplication::font()} {
        EXPECT_TRUE(QFontDatabase::hasFamily(QLatin1String{GetParam()}))
            << GetParam() << " is not installed";
        QApplication::setFont(QFont{QLatin1String{GetParam()}});
    }
    ~Fit() override { QApplication::setFont(before); }

    /// The text of the key, in a label or a button.
    static void expectWhole(QWidget* control, std::string_view key) {
        const QString whole = toQString(L(key));
        if (auto* label = dynamic_cast<QtLabel*>(control)) {
            label->setStringValue(L(key));
            EXPECT_EQ(label->displayedLines().join(u' ').toStdString(), whole.toStdString());
            return;
        }
        QStyleOptionButton option;
        option.initFrom(control);
        const QRect shape =
            control->style()->subElementRect(QStyle::SE_PushButtonContents, &option, control);
        EXPECT_LE(control->fontMetrics().horizontalAdvance(whole) + 12, shape.width()) << L(key);
    }
    QFont before;
};
INSTANTIATE_TEST_SUITE_P(WithEachFont, Fit, ::testing::Values("DejaVu Sans", "Inter", "Noto Sans"),
                         [](const auto& instance) {
                             std::string name = instance.param;
                             std::erase(name, ' ');
                             return name;
                         });

const std::pair<const char*, std::vector<const char*>> keysOfControls[] = {
    {"subtitleLabel", {"subtitle"}},
    {"deviceCaptionLabel", {"device.caption"}},
    {"firmwareCaptionLabel", {"firmware.caption"}},
    {"logCaptionLabel", {"log.caption"}},
    {"deviceStatusLabel", {"device.checking", "device.failed", "device.ready", "device.unknown"}},
    {"deviceDetailLabel", detailKeys},
    {"checkButton", {"button.check"}},
    {"builtinButton", {"button.bundled"}},
    {"chooseButton", {"button.choose"}},
    {"installButton", {"button.install"}},
};

TEST_P(Fit, EveryTextOfTheWindowIsShownWhole) {
    for (const std::int64_t language : {0, 1}) {
        Program program{language};
        program.start();
        const Widgets all = program.widgets();
        ASSERT_EQ(QFontInfo{all.subtitleLabel->font()}.family(), QStringLiteral("Inter"))
            << "the others have no Medium and DemiBold";
        const auto fits = [&] {
            for (const auto& [name, keys] : keysOfControls)
                for (const auto* key : keys) expectWhole(all.find(name), key);
            for (const Translation& entry : translations())
                if (entry.key.starts_with("op.")) expectWhole(all.operationLabel, entry.key);
            program.delegate->setFirmwarePath({});
            program.delegate->refreshTexts();
            EXPECT_EQ(all.firmwareLabel->displayedLines().at(0), all.firmwareLabel->text());
        };
        fits();
        // Where no better font than DejaVu is installed.
        for (QWidget* widget : program.window().findChildren<QWidget*>()) {
            QFont font = widget->font();
            font.setFamilies({QLatin1String{GetParam()}});
            widget->setFont(font);
        }
        fits();
    }
}

TEST_P(Fit, TwoLinesOfDetailFitTheirFrameAndDoNotTouch) {
    QtLabel label{{.pixels = 12, .truncation = Truncation::twoLines}, nullptr};
    label.resize(290, 32);
    const auto inkOf = [&](const QString& line, int row) {
        return label.fontMetrics().tightBoundingRect(line).translated(0, label.baselineOfRow(row));
    };
    for (const std::int64_t language : {0, 1}) {
        CurrentLanguage = language;
        for (const auto* key : detailKeys) {
            label.setStringValue(L(key));
            const QStringList lines = label.displayedLines();
            for (int row = 0; row < lines.size(); ++row) {
                EXPECT_GE(inkOf(lines.at(row), row).top(), 0) << L(key);
                EXPECT_LE(inkOf(lines.at(row), row).bottom(), 32) << L(key);
            }
        }
    }
    CurrentLanguage = 0;
    const auto tall = QStringLiteral("Agpq\u0419\u0444\u0449");
    EXPECT_LE(inkOf(tall, 0).bottom(), inkOf(tall, 1).top() + 1);
}

} // namespace
} // namespace oxlade::test
