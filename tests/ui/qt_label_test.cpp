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

TEST(QtLabel, AShortTextIsShownWholeAndWithoutMarkup) {
    QtLabel label{{}, nullptr};
    label.resize(300, 18);
    for (const char* text : {"Ready", "<b>a</b> &amp; b&c"}) {
        label.setStringValue(text);
        EXPECT_EQ(label.displayedLines(), QStringList{QString::fromUtf8(text)});
    }
}

TEST(QtLabel, ALongTextEndsInAnEllipsis) {
    QtLabel label{{}, nullptr};
    label.resize(60, 18);
    label.setStringValue("Flashing the MPC4000");
    const QString shown = label.displayedLines().at(0);
    EXPECT_TRUE(shown.endsWith(u'\u2026'));
    EXPECT_TRUE(shown.startsWith(u'F'));
    EXPECT_LE(label.fontMetrics().horizontalAdvance(shown), 60);
    EXPECT_EQ(label.text(), QStringLiteral("Flashing the MPC4000"));
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

TEST(QtLabel, ALongFileNameKeepsItsStartAndItsSize) {
    QtFileLabel label{{.weight = QFont::Medium, .truncation = Truncation::middle}, nullptr};
    label.resize(190, 20);
    label.setStringValue("mpc4000_operating_system_v1.71_final.bin  \u00B7  3.0 MB");
    const QString shown = label.displayedLines().at(0);
    EXPECT_TRUE(shown.startsWith(QStringLiteral("mpc4000")));
    EXPECT_TRUE(shown.endsWith(QStringLiteral("\u00B7  3.0 MB")));
    EXPECT_TRUE(shown.contains(u'\u2026'));
}

TEST(QtLabel, TwoLinesAreCutAfterTheSecondWithoutAnEllipsis) {
    QtLabel label{{.pixels = 12, .truncation = Truncation::twoLines}, nullptr};
    label.resize(290, 32);
    std::string text;
    for (int i = 0; i < 40; ++i) text += "word" + std::to_string(i) + " ";
    label.setStringValue(text);
    const QStringList lines = label.displayedLines();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(toQString(text).startsWith(lines.join(u' '))) << "broken at a space, nothing added";
    EXPECT_FALSE(lines.at(1).contains(u'\u2026'));
}

TEST(QtLabel, AWordTooLongForALineIsBrokenAnywhere) {
    QtLabel label{{.pixels = 12, .truncation = Truncation::twoLines}, nullptr};
    label.resize(290, 32);
    const std::string text(300, 'w');
    label.setStringValue(text);
    const QStringList lines = label.displayedLines();
    ASSERT_EQ(lines.size(), 2);
    for (const QString& line : lines) EXPECT_LE(label.fontMetrics().horizontalAdvance(line), 290);
    EXPECT_GT(lines.at(0).size(), 10);
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

TEST(ToolTip, FollowsTheSelection) {
    Program program;
    program.start();
    const QWidget& label = *program.widgets().firmwareLabel;
    EXPECT_EQ(asShown(label.toolTip()).toStdString(), bundledImage);
    program.files.files["/images/<i>os</i>.bin"] = {validImage(), false};
    program.delegate->selectFirmwareAtPath("/images/<i>os</i>.bin");
    EXPECT_EQ(asShown(label.toolTip()), QStringLiteral("/images/<i>os</i>.bin"));
    program.delegate->setFirmwarePath({});
    program.delegate->refreshTexts();
    EXPECT_EQ(asShown(label.toolTip()), program.widgets().firmwareLabel->text());
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

// Every text in its frame, with three fonts and in both languages.

class Fit : public ::testing::TestWithParam<const char*> {
  protected:
    Fit() : before{QApplication::font()} {
        EXPECT_TRUE(QFontDatabase::hasFamily(QLatin1String{GetParam()}))
            << GetParam() << " is not installed";
        QApplication::setFont(QFont{QLatin1String{GetParam()}});
    }
    ~Fit() override { QApplication::setFont(before); }

    /// The text of the key as the label would show it.
    void expectWhole(QtLabel& label, std::string_view key) {
        label.setStringValue(L(key));
        const QString whole = toQString(L(key));
        EXPECT_EQ(label.displayedLines().join(u' ').toStdString(), whole.toStdString());
    }
    void expectWhole(QtButton& button, std::string_view key) {
        button.setTitle(L(key));
        const int width = button.fontMetrics().horizontalAdvance(toQString(L(key)));
        QStyleOptionButton option;
        option.initFrom(&button);
        const QRect shape =
            button.style()->subElementRect(QStyle::SE_PushButtonContents, &option, &button);
        EXPECT_LE(width + 12, shape.width()) << L(key);
    }
    QFont before;
};
INSTANTIATE_TEST_SUITE_P(WithEachFont, Fit, ::testing::Values("DejaVu Sans", "Inter", "Noto Sans"),
                         [](const auto& instance) {
                             std::string name = instance.param;
                             std::erase(name, ' ');
                             return name;
                         });

void fitEverything(Program& program, const auto& expectWhole) {
    const Widgets c = program.widgets();
    expectWhole(*c.subtitleLabel, "subtitle");
    expectWhole(*c.deviceCaptionLabel, "device.caption");
    expectWhole(*c.firmwareCaptionLabel, "firmware.caption");
    expectWhole(*c.logCaptionLabel, "log.caption");
    for (const auto* key : {"device.checking", "device.failed", "device.ready", "device.unknown"})
        expectWhole(*c.deviceStatusLabel, key);
    for (const auto* key :
         {"device.checking.detail", "device.failed.detail", "device.unknown.detail"})
        expectWhole(*c.deviceDetailLabel, key);
    for (const Translation& entry : translations())
        if (entry.key.starts_with("op.")) expectWhole(*c.operationLabel, entry.key);
    expectWhole(*c.checkButton, "button.check");
    expectWhole(*c.builtinButton, "button.bundled");
    expectWhole(*c.chooseButton, "button.choose");
    expectWhole(*c.installButton, "button.install");
}

TEST_P(Fit, EveryTextOfTheWindowIsShownWhole) {
    for (const std::int64_t language : {0, 1}) {
        Program program{language};
        program.start();
        ASSERT_EQ(QFontInfo{program.widgets().subtitleLabel->font()}.family(),
                  QStringLiteral("Inter"))
            << "the others have no Medium and DemiBold";
        const auto fits = [&] {
            fitEverything(program, [this](auto& control, auto key) { expectWhole(control, key); });
            program.delegate->setFirmwarePath({});
            program.delegate->refreshTexts();
            const QtFileLabel& label = *program.widgets().firmwareLabel;
            EXPECT_EQ(label.displayedLines().at(0), label.text());
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
    for (const std::int64_t language : {0, 1}) {
        CurrentLanguage = language;
        QtLabel label{{.pixels = 12, .truncation = Truncation::twoLines}, nullptr};
        label.resize(290, 32);
        for (const auto* key :
             {"device.checking.detail", "device.failed.detail", "device.unknown.detail"}) {
            label.setStringValue(L(key));
            const QStringList lines = label.displayedLines();
            for (int row = 0; row < lines.size(); ++row) {
                const QRect ink = label.fontMetrics().tightBoundingRect(lines.at(row));
                const int baseline = label.baselineOfRow(row);
                EXPECT_GE(baseline + ink.top(), 0) << L(key);
                EXPECT_LE(baseline + ink.bottom(), 32) << L(key);
            }
        }
    }
    CurrentLanguage = 0;
    QtLabel label{{.pixels = 12, .truncation = Truncation::twoLines}, nullptr};
    label.resize(290, 32);
    const QRect ink =
        label.fontMetrics().tightBoundingRect(QStringLiteral("Agpq\u0419\u0444\u0449"));
    EXPECT_LE(label.baselineOfRow(0) + ink.bottom(), label.baselineOfRow(1) + ink.top() + 1);
}

} // namespace
} // namespace oxlade::test
