// Alerts and the file chooser.
#include "tests/testing/eventually.h"
#include "tests/ui/program.h"
#include "ui/alert_sheet.h"
#include "ui/palette.h"
#include "ui/qt_dialogs.h"
#include "ui/text.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

namespace oxlade::test {
namespace {

class DialogTest : public ProgramTest {
  protected:
    DialogTest() {
        watch_.callOnTimeout([this] {
            QWidget* dialog = QApplication::activeModalWidget();
            if (dialog == nullptr) return;
            ADD_FAILURE() << "waits for an answer to " << qPrintable(dialog->windowTitle());
            dialog->close();
            watch_.start(std::chrono::seconds(1)); // there may be more of them
        });
        watch_.start(deadline);
    }
    /// Acts once an alert or the chooser is open, and cancels it if the action leaves it open: the
    /// test would wait for ever for a key that does not reach it.
    template <class Dialog>
    void whenShown(std::function<void(Dialog&)> act) {
        QTimer::singleShot(0, [this, act = std::move(act)] {
            for (QWidget* widget : QApplication::allWidgets())
                if (auto* dialog = dynamic_cast<Dialog*>(widget); dialog && dialog->isVisible()) {
                    act(*dialog);
                    return QTimer::singleShot(0, dialog, [this, dialog] {
                        wasLeftOpen = true;
                        dialog->close(); // as its last button
                    });
                }
            FAIL() << "no dialog";
        });
    }
    QtDialogs dialogs{[this] { return program.interface->window(); }};
    bool wasLeftOpen = false;

  private:
    QTimer watch_;
};

class AlertTest : public DialogTest {
  protected:
    bool ask(std::function<void(AlertSheet&)> act, const Alert& alert = question) {
        whenShown<AlertSheet>(std::move(act));
        return dialogs.runAlert(alert);
    }
    bool answerWith(std::initializer_list<int> keys) {
        return ask([&](AlertSheet& alert) {
            for (const int key : keys) {
                EXPECT_TRUE(alert.isVisible());
                press(key);
            }
            EXPECT_FALSE(alert.isVisible());
        });
    }
    static QList<QPushButton*> buttons(const AlertSheet& alert) {
        return alert.findChildren<QPushButton*>();
    }
    /// The message, then the text.
    static QList<QLabel*> labels(const AlertSheet& alert) { return alert.findChildren<QLabel*>(); }
    static QRect frameIn(const AlertSheet& alert, const QWidget* part) {
        return {part->mapTo(&alert, QPoint{}), part->size()};
    }
    /// What is painted left of the message.
    static QImage icon(AlertSheet& alert) {
        const QRect message = frameIn(alert, labels(alert).first());
        return alert.grab({message.left() - 66, message.top() - 10, 60, 70}).toImage();
    }
    static inline const Alert question{
        AlertStyle::critical, "FLASH", "It is erased.", {"Flash", "Cancel"}};
};

TEST_F(AlertTest, ReturnAnswersTheFirstButtonAndEscapeTheLast) {
    EXPECT_TRUE(answerWith({Qt::Key_Return}));
    EXPECT_TRUE(answerWith({Qt::Key_Enter}));
    EXPECT_FALSE(answerWith({Qt::Key_Escape}));
}

TEST_F(AlertTest, KeysPressTheButtonThatHasTheKeyboardWhichIsTheFilledOne) {
    for (const int key : {Qt::Key_Return, Qt::Key_Enter})
        for (const int way : {Qt::Key_Tab, Qt::Key_Right}) EXPECT_FALSE(answerWith({way, key}));
    EXPECT_TRUE(answerWith({Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Return})) << "Tab stays in it";
    ask([this](AlertSheet& alert) {
        const auto all = buttons(alert);
        EXPECT_TRUE(all[0]->isDefault() && !all[1]->isDefault());
        press(Qt::Key_Tab);
        EXPECT_TRUE(all[1]->hasFocus() && all[1]->isDefault() && !all[0]->isDefault());
        press(Qt::Key_Space);
        release(Qt::Key_Space);
        EXPECT_FALSE(alert.isVisible());
    });
}

TEST_F(AlertTest, WhileItIsOpenNothingInTheWindowCanBePressed) {
    makeReady();
    widgets().installButton->setFocus();
    ask([this](AlertSheet& alert) {
        for (auto* button : program.window().findChildren<QAbstractButton*>()) {
            if (alert.isAncestorOf(button)) continue;
            EXPECT_FALSE(button->isEnabled()) << qPrintable(button->text());
            button->click();
        }
        EXPECT_FALSE(program.menuBar().isEnabled());
        const QPalette& log = widgets().logView->palette();
        EXPECT_EQ(log.color(QPalette::Disabled, QPalette::Text), log.color(QPalette::Text))
            << "alerts refer to the log";
        program.delegate->setFirmwarePath({}); // a change of state under the alert
        program.delegate->updateButtons();
        press(Qt::Key_F10);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    });
    EXPECT_EQ(program.trace.take(), "");
    EXPECT_EQ(CurrentLanguage, 0);
    EXPECT_TRUE(program.menuBar().isEnabled());
    EXPECT_TRUE(widgets().checkButton->isEnabled());
    EXPECT_FALSE(widgets().installButton->isEnabled());
}

TEST_F(AlertTest, TheFocusReturnsToTheControlThatHadIt) {
    widgets().checkButton->setFocus();
    answerWith({Qt::Key_Escape});
    EXPECT_EQ(program.window().focusWidget(), widgets().checkButton);
}

// On X11 the mark may be missing: then a release and a press have the same time.
TEST_F(AlertTest, AHeldKeyDoesNotAnswerWhetherItsRepetitionsAreMarkedOrNot) {
    EXPECT_TRUE(ask([this](AlertSheet& alert) {
        for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
            for (int i = 0; i < 30; ++i) press(key, {}, true);
            for (quint64 time = 1000; time < 2000; time += 30) {
                sendKey(QEvent::KeyRelease, time, key);
                sendKey(QEvent::KeyPress, time, key);
            }
            EXPECT_TRUE(alert.isVisible()) << key;
        }
        sendKey(QEvent::KeyRelease, 2100);
        sendKey(QEvent::KeyPress, 2250);
        EXPECT_FALSE(alert.isVisible()) << "another press";
    }));
}

TEST_F(AlertTest, StandsOverTheMiddleOfTheWholeWindowAndIsGoneAfterwards) {
    const QRect whole = program.window().rect();
    ask([&](AlertSheet& alert) {
        EXPECT_EQ(alert.parentWidget(), &program.window());
        EXPECT_EQ(alert.geometry(), whole) << "the menu bar, too";
        EXPECT_EQ(program.window().childAt(program.menuBar().geometry().center()), &alert);
        const QRect message = frameIn(alert, labels(alert)[0]),
                    text = frameIn(alert, labels(alert)[1]);
        const QRect flash = frameIn(alert, buttons(alert)[0]),
                    cancel = frameIn(alert, buttons(alert)[1]);
        EXPECT_LT(message.bottom(), text.top());
        EXPECT_LT(text.bottom(), flash.top());
        EXPECT_LT(cancel.right(), flash.left()) << "the first button is at the right";
        EXPECT_NEAR(message.top(), whole.height() - flash.bottom(), 3) << "not in the middle";
    });
    EXPECT_EQ(program.window().findChild<QWidget*>(AlertSheet::name), nullptr);
}

TEST_F(AlertTest, TheWindowCannotBeClosedUnderItButPointsAtIt) {
    const QColor ring = markColor(program.window().palette());
    const auto isRinged = [&](AlertSheet& alert) {
        const QImage image = alert.grab().toImage();
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, image.height() / 2) == ring) return true;
        return false;
    };
    ask([&](AlertSheet& alert) {
        for (const bool byKey : {true, false}) {
            EXPECT_FALSE(isRinged(alert));
            if (byKey)
                sendKey(QEvent::KeyPress, 0, Qt::Key_Q, Qt::ControlModifier);
            else
                program.window().close();
            EXPECT_TRUE(program.window().isVisible() && alert.isVisible());
            EXPECT_TRUE(isRinged(alert)) << byKey;
            EXPECT_TRUE(QTest::qWaitFor([&] { return !isRinged(alert); }, 30'000));
        }
    });
}

TEST_F(AlertTest, AnOpenMenuIsClosed) {
    QMenu& menu = *program.menuBar().actions().first()->menu();
    menu.popup({});
    ASSERT_TRUE(menu.isVisible());
    ask([&](AlertSheet&) { EXPECT_FALSE(menu.isVisible()); });
}

TEST_F(AlertTest, BeforeTheWindowIsShownItIsAWindowOfItsOwnInTheMiddleOfTheScreen) {
    program.window().hide();
    EXPECT_FALSE(ask([](AlertSheet& alert) {
        EXPECT_TRUE(alert.isWindow());
        EXPECT_TRUE(alert.windowFlags() & Qt::FramelessWindowHint) << "no buttons to minimise it";
        EXPECT_EQ(alert.minimumSize(), alert.maximumSize());
        const QPoint off = alert.frameGeometry().center() - alert.screen()->geometry().center();
        EXPECT_LE(off.manhattanLength(), 2);
        alert.close();
        EXPECT_FALSE(alert.isVisible());
    })) << "closing it is not the first button";
}

TEST_F(AlertTest, EachStyleHasItsIconAlignedWithTheCapitalsOfTheMessage) {
    const auto firstInk = [](const QImage& image) {
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (contrast(image.pixelColor(x, y), image.pixelColor(0, 0)) > 2) return y;
        return -1;
    };
    std::vector<QImage> icons;
    const auto look = [&](AlertSheet& alert) {
        icons.push_back(icon(alert));
        const QRect message = frameIn(alert, labels(alert).first()).adjusted(0, -10, 0, 0);
        if (icons.size() > 1) return; // the other marks have other tops
        EXPECT_EQ(firstInk(icons[0]), firstInk(alert.grab(message).toImage()));
    };
    for (const auto style : {AlertStyle::critical, AlertStyle::warning, AlertStyle::informational})
        ask(look, {style, "FLASH", "It is erased.", {}});
    EXPECT_NE(icons[0], icons[1]);
    EXPECT_NE(icons[1], icons[2]);
}

TEST_F(AlertTest, ShowsItsTextsWholeWithoutMarkupOrMnemonics) {
    const std::string path(500, 'x');
    for (const std::string& text :
         {std::string{"<i>b</i>"}, path, path + path + path + path + path + path}) {
        const auto isWhole = [&](AlertSheet& alert) {
            for (const QLabel* label : labels(alert)) EXPECT_EQ(label->textFormat(), Qt::PlainText);
            EXPECT_EQ(labels(alert)[0]->text(), QStringLiteral("<b>a</b>"));
            EXPECT_EQ(toUtf8(labels(alert)[1]->text()), text);
            EXPECT_EQ(buttons(alert)[0]->text(), QStringLiteral("A && B"));
            EXPECT_TRUE(alert.rect().contains(frameIn(alert, buttons(alert)[0])));
            const QLabel& label = *labels(alert)[1];
            EXPECT_GE(label.width() * label.height(), 70 * static_cast<int>(text.size()))
                << "no room for all of it";
            const auto& bar = *alert.findChild<QScrollArea*>()->verticalScrollBar();
            EXPECT_EQ(bar.maximum() > 0, text.size() > path.size()) << text.size();
            if (bar.maximum() > 0) {
                press(Qt::Key_Tab);
                press(Qt::Key_Down);
                EXPECT_GT(bar.value(), 0) << "scrolls by key";
            }
            press(Qt::Key_Return);
            EXPECT_FALSE(alert.isVisible());
        };
        EXPECT_TRUE(ask(isWhole, {AlertStyle::warning, "<b>a</b>", text, {"A & B"}}));
    }
}

TEST_F(AlertTest, WithoutButtonsOfItsOwnHasOneThatBothKeysAnswer) {
    const auto pressing = [this](int key) {
        return [this, key](AlertSheet& alert) {
            EXPECT_EQ(buttons(alert).size(), 1);
            press(key);
            EXPECT_FALSE(alert.isVisible());
        };
    };
    for (const int key : {Qt::Key_Return, Qt::Key_Escape})
        EXPECT_TRUE(ask(pressing(key), {AlertStyle::informational, "Done", "Restart it.", {}}));
}

TEST_F(AlertTest, TheEndOfProgramOrSessionIsNotTheFirstButton) {
    const auto endSession = [] {
        QEvent quit{QEvent::Quit};
        QCoreApplication::sendEvent(qApp, &quit);
    };
    for (const std::function<void()>& end :
         {std::function<void()>{endSession}, {[] { QCoreApplication::exit(); }}}) {
        QTimer::singleShot(0, [&] { EXPECT_FALSE(ask([&](AlertSheet&) { end(); })); });
        QApplication::exec();
        EXPECT_FALSE(wasLeftOpen);
    }
}

class PanelTest : public DialogTest {
  protected:
    PanelTest() {
        for (const char* name : {"a.bin", "B.BIN", "c.txt", "the \"last\" one.bin"}) {
            QFile file{folder.filePath(QLatin1String{name})};
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }
    std::optional<std::string> show(std::function<void(QFileDialog&)> act) {
        whenShown<QFileDialog>(std::move(act));
        return dialogs.runOpenPanel(panel);
    }
    std::optional<std::string> choose(const char* name) {
        return show([this, name](QFileDialog& dialog) {
            dialog.setDirectory(folder.path());
            dialog.selectFile(folder.filePath(QLatin1String{name}));
            static_cast<QDialog&>(dialog).accept();
        });
    }
    std::string inFolder(const char* name) { return toUtf8(folder.filePath(QLatin1String{name})); }
    QTemporaryDir folder;
    const OpenPanel panel{"Choose an OS file for the MPC4000", "bin"};
};

TEST_F(PanelTest, GivesTheAbsolutePathOfTheChosenFileWhateverItsExtension) {
    for (const char* name : {"a.bin", "B.BIN", "c.txt"}) EXPECT_EQ(choose(name), inFolder(name));
    show([this](QFileDialog& dialog) {
        EXPECT_EQ(dialog.directory().canonicalPath(), QDir{folder.path()}.canonicalPath())
            << "the next choice starts there";
    });
}

TEST_F(PanelTest, APathWithAQuotationMarkCanBeTyped) {
    for (const bool absolute : {true, false}) {
        const auto path = show([&](QFileDialog& dialog) {
            dialog.setDirectory(folder.path());
            const QString name = QStringLiteral("the \"last\" one.bin");
            auto& open = *dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open);
            auto& line = *dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            line.setText(QStringLiteral("no \"such\" file.bin"));
            EXPECT_FALSE(open.isEnabled());
            line.setText(absolute ? folder.filePath(name) : name);
            EXPECT_TRUE(open.isEnabled());
            open.setEnabled(false); // as the chooser does when it has read a folder
            EXPECT_TRUE(open.isEnabled());
            if (absolute)
                open.click();
            else
                QTest::keyClick(&line, Qt::Key_Return);
        });
        EXPECT_EQ(path, inFolder("the \"last\" one.bin"));
    }
}

TEST_F(PanelTest, GivesNothingWhenItIsCancelledAndWritesNoSettings) {
    QTemporaryDir config;
    const auto setPath = [](const QString& path) {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path);
    };
    setPath(config.path());
    EXPECT_EQ(show([](QFileDialog& dialog) { dialog.reject(); }), std::nullopt);
    EXPECT_TRUE(QDir{config.path()}.isEmpty()) << "Qt's own chooser would write some";
    QSettings ours{QStringLiteral("Oxlade"), QStringLiteral("Oxlade")};
    EXPECT_TRUE(ours.fileName().startsWith(config.path())) << "the program's own go there again";
    setPath(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
}

TEST_F(PanelTest, ShowsItsMessageAndOneFilterOnly) {
    show([](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"Choose an OS file for the MPC4000"_qs);
        const QString filters = dialog.nameFilters().join(u'|'); // no way to all files
        EXPECT_EQ(filters.toStdString(), "*.bin (*.[bB][iI][nN])");
        EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_TRUE(dialog.testOption(QFileDialog::ReadOnly));
    });
}

TEST_F(PanelTest, IsInTheCurrentLanguageAndRemovesItsTranslation) {
    const auto words = [this] {
        QStringList said;
        show([&](QFileDialog& dialog) {
            for (const QLabel* label : dialog.findChildren<QLabel*>()) said += label->text();
        });
        return said;
    };
    const QString english = QStringLiteral("Look in:"), russian = QStringLiteral("Папка:");
    EXPECT_TRUE(words().contains(english));
    CurrentLanguage = 1;
    const QStringList inRussian = words();
    EXPECT_TRUE(inRussian.contains(russian)) << inRussian.join(u'|').toStdString();
    EXPECT_FALSE(inRussian.contains(english));
    EXPECT_EQ(QFileDialog::tr("Look in:"), english);
    CurrentLanguage = 0;
    EXPECT_TRUE(words().contains(english));
}

} // namespace
} // namespace oxlade::test
