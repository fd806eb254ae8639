// The texts of Qt's own chooser in Russian.
#include "ui/chooser_texts.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTimer>

#include <gtest/gtest.h>
#include <memory>

namespace oxlade::test {
namespace {

/// What the chooser shows or tells assistive technology, without its title and names of files.
QStringList textsOf(QFileDialog& dialog) {
    QStringList texts;
    for (const QWidget* widget : dialog.findChildren<QWidget*>())
        texts << widget->toolTip() << widget->statusTip() << widget->whatsThis()
              << widget->accessibleName() << widget->accessibleDescription();
    for (const auto* label : dialog.findChildren<QLabel*>()) texts << label->text();
    for (const auto* button : dialog.findChildren<QAbstractButton*>()) texts << button->text();
    for (const auto* action : dialog.findChildren<QAction*>()) texts << action->text();
    for (const auto* header : dialog.findChildren<QHeaderView*>())
        for (int i = 0; i < header->model()->columnCount(); ++i)
            texts << header->model()->headerData(i, Qt::Horizontal).toString();
    const auto* places = dialog.findChild<QListView*>(QStringLiteral("sidebar"))->model();
    texts << places->index(0, 0).data().toString(); // the computer; then folders
    const std::unique_ptr<QMenu> menu{dialog.findChild<QLineEdit*>()->createStandardContextMenu()};
    // With the keys, if any, behind a tab.
    for (const auto* action : menu->actions()) texts << action->text().section(u'\t', 0, 0);
    texts.removeDuplicates();
    return texts;
}

/// The chooser as the program opens it, where Qt has no translations.
class ChooserTextsTest : public testing::Test {
  protected:
    ChooserTextsTest() {
        QCoreApplication::installTranslator(&russian_);
        chooser = std::make_unique<QFileDialog>(nullptr, QString{}, QDir::rootPath());
        chooser->setFileMode(QFileDialog::ExistingFile);
        chooser->setOptions(QFileDialog::HideNameFilterDetails | QFileDialog::ReadOnly |
                            QFileDialog::DontUseNativeDialog);
        chooser->show();
    }
    std::unique_ptr<QFileDialog> chooser;

  private:
    RussianChooserTexts russian_;
};

TEST_F(ChooserTextsTest, LeaveNothingInEnglish) {
    const QStringList texts = textsOf(*chooser);
    EXPECT_GE(texts.filter(QRegularExpression{QStringLiteral("[а-яА-Я]")}).size(), 25)
        << texts.join(u'|').toStdString();
    EXPECT_EQ(texts.filter(QRegularExpression{QStringLiteral("[A-Za-z]")}).join(u'|'), QString{});
}

TEST_F(ChooserTextsTest, SayThatThereIsNoSuchFile) {
    chooser->findChild<QLineEdit*>()->setText(QStringLiteral("нет такого"));
    bool isSaid = false;
    QTimer::singleShot(0, [&isSaid] {
        auto* message = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(message, nullptr);
        isSaid = true;
        EXPECT_TRUE(message->text().contains(QStringLiteral("Файл не найден")))
            << message->text().toStdString();
        EXPECT_EQ(message->buttons().first()->text(), QStringLiteral("ОК")); // Cyrillic
        message->reject();
    });
    static_cast<QDialog&>(*chooser).accept();
    EXPECT_TRUE(isSaid);
}

} // namespace
} // namespace oxlade::test
