// Alerts and the file chooser.
#include "tests/ui/program.h"
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
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

namespace oxlade::test {
namespace {

class AlertTest : public ProgramTest {
  protected:
    /// Acts once the dialog is open.
    template <class Widget>
    void whenShown(std::function<void(Widget&)> act) {
        QTimer::singleShot(0, [act = std::move(act)] {
            auto* dialog = dynamic_cast<Widget*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            act(*dialog);
        });
    }
    static void press(QWidget& dialog, int key, bool autoRepeat = false) {
        QTest::simulateEvent(dialog.windowHandle(), true, key, Qt::NoModifier, QString{},
                             autoRepeat);
    }
    /// A press or a release as the window system reports it, at a time of its own.
    static void sendKey(QWidget& dialog, QEvent::Type type, quint64 time,
                        int key = Qt::Key_Return) {
        QKeyEvent event{type, key, Qt::NoModifier};
        event.setTimestamp(time);
        QCoreApplication::sendEvent(dialog.windowHandle(), &event);
    }
    bool answerWith(int key) {
        whenShown<QMessageBox>([key](QMessageBox& box) { press(box, key); });
        return dialogs.runAlert(question);
    }
    QtDialogs dialogs{[this] { return program.interface->window(); }};
    const Alert question{AlertStyle::critical, "Flash?", "It is erased.", {"Flash", "Cancel"}};
};

TEST_F(AlertTest, ReturnAnswersTheFirstButtonAndEscapeTheLast) {
    EXPECT_TRUE(answerWith(Qt::Key_Return));
    EXPECT_TRUE(answerWith(Qt::Key_Enter));
    EXPECT_FALSE(answerWith(Qt::Key_Escape));
}

TEST_F(AlertTest, ReturnAnswersTheButtonThatHasTheKeyboard) {
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        for (const int way : {Qt::Key_Tab, Qt::Key_Right}) {
            whenShown<QMessageBox>([&](QMessageBox& box) {
                press(box, way);
                EXPECT_TRUE(box.buttons().at(1)->hasFocus());
                press(box, key);
            });
            EXPECT_FALSE(dialogs.runAlert(question)) << key << ' ' << way;
        }
    }
}

TEST_F(AlertTest, WhileItIsOpenNothingInTheWindowCanBePressed) {
    makeReady();
    widgets().installButton->setFocus();
    whenShown<QMessageBox>([this](QMessageBox& box) {
        for (auto* button : program.window().findChildren<QAbstractButton*>()) {
            if (button->window() != &program.window()) continue;
            EXPECT_FALSE(button->isEnabled()) << qPrintable(button->text());
            button->click();
        }
        EXPECT_FALSE(program.menuBar().isEnabled());
        const QPalette& log = widgets().logView->palette();
        EXPECT_EQ(log.color(QPalette::Disabled, QPalette::Text), log.color(QPalette::Text))
            << "alerts refer to the log";
        EXPECT_TRUE(box.isEnabled());
        program.delegate->setFirmwarePath({}); // a change of state under the alert
        program.delegate->updateButtons();
        press(box, Qt::Key_Escape);
    });
    dialogs.runAlert(question);
    EXPECT_EQ(program.trace.take(), "");
    EXPECT_EQ(CurrentLanguage, 0);
    EXPECT_TRUE(program.menuBar().isEnabled());
    EXPECT_TRUE(widgets().checkButton->isEnabled());
    EXPECT_FALSE(widgets().installButton->isEnabled());
}

TEST_F(AlertTest, TheFocusReturnsToTheControlThatHadIt) {
    widgets().checkButton->setFocus();
    answerWith(Qt::Key_Escape);
    EXPECT_EQ(program.window().focusWidget(), widgets().checkButton);
}

TEST_F(AlertTest, ClosingItIsNotTheFirstButton) {
    whenShown<QMessageBox>([](QMessageBox& box) { box.close(); });
    EXPECT_FALSE(dialogs.runAlert(question));
}

// On X11 the mark may be missing: then a release and a press have the same time.
TEST_F(AlertTest, AHeldKeyDoesNotAnswerWhetherItsRepetitionsAreMarkedOrNot) {
    whenShown<QMessageBox>([](QMessageBox& box) {
        for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
            for (int i = 0; i < 30; ++i) press(box, key, true);
            for (quint64 time = 1000; time < 2000; time += 30) {
                sendKey(box, QEvent::KeyRelease, time, key);
                sendKey(box, QEvent::KeyPress, time, key);
            }
            EXPECT_TRUE(box.isVisible()) << key;
        }
        sendKey(box, QEvent::KeyRelease, 2100);
        sendKey(box, QEvent::KeyPress, 2250);
        EXPECT_FALSE(box.isVisible()) << "another press";
    });
    EXPECT_TRUE(dialogs.runAlert(question));
}

TEST_F(AlertTest, CanOnlyBeClosed) {
    whenShown<QMessageBox>([](QMessageBox& box) {
        EXPECT_TRUE(box.windowFlags() & Qt::CustomizeWindowHint)
            << "the window manager would add what it likes";
        EXPECT_TRUE(box.windowFlags() & Qt::WindowCloseButtonHint);
        EXPECT_FALSE(box.windowFlags() & Qt::WindowMinimizeButtonHint);
        EXPECT_FALSE(box.windowFlags() & Qt::WindowMaximizeButtonHint);
        press(box, Qt::Key_Escape);
    });
    dialogs.runAlert(question);
}

TEST_F(AlertTest, TheIconIsAlignedWithTheCapitalsOfTheMessage) {
    whenShown<QMessageBox>([](QMessageBox& box) {
        const QImage image = box.grab().toImage();
        const QColor ground = image.pixelColor(2, 2);
        const auto firstInk = [&](int from, int to) {
            for (int y = 0; y < image.height(); ++y)
                for (int x = from; x < to; ++x)
                    if (contrast(image.pixelColor(x, y), ground) > 2) return y;
            return -1;
        };
        const int icon = firstInk(0, 24 + 48), text = firstInk(24 + 56, image.width());
        EXPECT_EQ(icon, text);
        press(box, Qt::Key_Escape);
    });
    dialogs.runAlert({AlertStyle::critical, "FLASH", "It is erased.", {"Flash", "Cancel"}});
}

TEST_F(AlertTest, ShowsItsTextsWithoutMarkupOrMnemonics) {
    whenShown<QMessageBox>([](QMessageBox& box) {
        for (const QLabel* label : box.findChildren<QLabel*>())
            EXPECT_TRUE(label->textFormat() == Qt::PlainText || !label->pixmap().isNull());
        EXPECT_EQ(box.text(), QStringLiteral("<b>a</b>"));
        EXPECT_EQ(box.informativeText(), QStringLiteral("<i>b</i>"));
        EXPECT_FALSE(box.iconPixmap().isNull());
        EXPECT_EQ(box.buttons().at(0)->text(), QStringLiteral("A && B"));
        EXPECT_EQ(box.parentWidget()->objectName(), QStringLiteral("window"));
        box.close();
    });
    dialogs.runAlert({AlertStyle::warning, "<b>a</b>", "<i>b</i>", {"A & B"}});
}

TEST_F(AlertTest, WithoutButtonsOfItsOwnHasOneThatBothKeysAnswer) {
    for (const int key : {Qt::Key_Return, Qt::Key_Escape}) {
        whenShown<QMessageBox>([key](QMessageBox& box) {
            EXPECT_EQ(box.buttons().size(), 1);
            press(box, key);
        });
        dialogs.runAlert({AlertStyle::informational, "Done", "Restart it.", {}});
    }
}

TEST_F(AlertTest, QuittingIsNotTheFirstButton) {
    QTimer::singleShot(0, [this] {
        whenShown<QMessageBox>([](QMessageBox&) { QCoreApplication::exit(); });
        EXPECT_FALSE(dialogs.runAlert(question));
    });
    QApplication::exec();
}

TEST_F(AlertTest, TheStylesHaveDifferentPictures) {
    std::vector<QImage> pictures;
    for (const auto style :
         {AlertStyle::informational, AlertStyle::warning, AlertStyle::critical}) {
        whenShown<QMessageBox>([&](QMessageBox& box) {
            pictures.push_back(box.iconPixmap().toImage());
            box.close();
        });
        dialogs.runAlert({style, "a", "b", {}});
    }
    EXPECT_NE(pictures[0], pictures[1]);
    EXPECT_NE(pictures[1], pictures[2]);
}

class PanelTest : public AlertTest {
  protected:
    PanelTest() {
        for (const char* name : {"a.bin", "B.BIN", "c.txt", "the \"last\" one.bin"}) {
            QFile file{folder.filePath(QLatin1String{name})};
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }
    std::optional<std::string> choose(const char* name) {
        whenShown<QFileDialog>([this, name](QFileDialog& dialog) {
            dialog.setDirectory(folder.path());
            dialog.selectFile(folder.filePath(QLatin1String{name}));
            static_cast<QDialog&>(dialog).accept();
        });
        return dialogs.runOpenPanel(panel);
    }
    std::string inFolder(const char* name) { return toUtf8(folder.filePath(QLatin1String{name})); }
    QTemporaryDir folder;
    const OpenPanel panel{"Choose an OS file for the MPC4000", "bin"};
};

TEST_F(PanelTest, GivesTheAbsolutePathOfTheChosenFileWhateverItsExtension) {
    for (const char* name : {"a.bin", "B.BIN", "c.txt"}) EXPECT_EQ(choose(name), inFolder(name));
}

TEST_F(PanelTest, APathWithAQuotationMarkCanBeTyped) {
    for (const bool absolute : {true, false}) {
        whenShown<QFileDialog>([&](QFileDialog& dialog) {
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
            if (dialog.isVisible()) dialog.reject();
        });
        EXPECT_EQ(dialogs.runOpenPanel(panel), inFolder("the \"last\" one.bin"));
    }
}

TEST_F(PanelTest, GivesNothingWhenItIsCancelled) {
    whenShown<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(dialogs.runOpenPanel(panel), std::nullopt);
}

TEST_F(PanelTest, ShowsItsMessageAndOneFilterOnly) {
    whenShown<QFileDialog>([](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Choose an OS file for the MPC4000"));
        ASSERT_EQ(dialog.nameFilters().size(), 1) << "no way to all files";
        EXPECT_TRUE(dialog.nameFilters().at(0).endsWith(QStringLiteral(" (*.[bB][iI][nN])")))
            << dialog.nameFilters().at(0).toStdString();
        EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_TRUE(dialog.testOption(QFileDialog::ReadOnly));
        dialog.reject();
    });
    dialogs.runOpenPanel(panel);
}

TEST_F(PanelTest, IsInTheCurrentLanguageAndRemovesItsTranslation) {
    const auto words = [this] {
        QStringList said;
        whenShown<QFileDialog>([&](QFileDialog& dialog) {
            for (const QLabel* label : dialog.findChildren<QLabel*>()) said += label->text();
            dialog.reject();
        });
        dialogs.runOpenPanel(panel);
        return said;
    };
    const QString english = QStringLiteral("Look in:"), russian = QStringLiteral("Перейти к:");
    EXPECT_TRUE(words().contains(english));
    CurrentLanguage = 1;
    const QStringList inRussian = words();
    EXPECT_TRUE(inRussian.contains(russian)) << inRussian.join(u'|').toStdString();
    EXPECT_FALSE(inRussian.contains(english));
    EXPECT_EQ(QFileDialog::tr("Look in:"), english);
    CurrentLanguage = 0;
    EXPECT_TRUE(words().contains(english));
}

TEST_F(PanelTest, StartsWhereTheLastFileWasChosen) {
    choose("a.bin");
    whenShown<QFileDialog>([this](QFileDialog& dialog) {
        EXPECT_EQ(dialog.directory().canonicalPath(), QDir{folder.path()}.canonicalPath());
        dialog.reject();
    });
    dialogs.runOpenPanel(panel);
}

} // namespace
} // namespace oxlade::test
