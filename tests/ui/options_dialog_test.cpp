// The options as a person changes them: every setting has one place, and what is typed there is what is kept.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QtTest/QTest>

#include "app/setting_bits.h"
#include "base/desktop_texts/options.h"
#include "support/ui/desktop_world.h"
#include "ui/core/text.h"
#include "ui/options/list_editor.h"
#include "ui/options/option_page.h"
#include "ui/options/options_dialog.h"
#include "ui/options/options_keeper.h"

namespace kelvane::testing {
namespace {

class OptionsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(world.trigger("tools.options"));
        dialog = world.await<OptionsDialog>("optionsDialog");
        ASSERT_NE(dialog, nullptr);
    }

    [[nodiscard]] OptionEditor* editor(const QString& key) const { return dialog->findChild<OptionEditor*>(key); }
    template <class T>
    [[nodiscard]] T* control(const char* key) const
    {
        OptionEditor* const found = editor(QString::fromLatin1(key));
        return found == nullptr ? nullptr : found->findChild<T*>();
    }
    [[nodiscard]] Settings settings() { return world.desktop().settings(); }
    [[nodiscard]] QStringList pagesInView() const
    {
        const auto* const list = dialog->findChild<QListWidget*>(QStringLiteral("optionsPages"));
        QStringList titles;
        for (int row = 0; row < list->count(); ++row) {
            if (!list->item(row)->isHidden())
                titles.push_back(list->item(row)->text());
        }
        return titles;
    }
    void search(const char* typed) const
    {
        dialog->findChild<QLineEdit*>(QStringLiteral("optionsSearch"))->setText(QString::fromLatin1(typed));
    }
    void press(const char* button) const
    {
        auto* const found = dialog->findChild<QPushButton*>(QString::fromLatin1(button));
        ASSERT_NE(found, nullptr) << button;
        QTest::mouseClick(found, Qt::LeftButton);
    }
    void goTo(TextId page) const
    {
        auto* const list = dialog->findChild<QListWidget*>(QStringLiteral("optionsPages"));
        list->setCurrentItem(list->findItems(shown(page), Qt::MatchExactly).value(0));
    }

    DesktopWorld world;
    OptionsDialog* dialog = nullptr;
};

TEST_F(OptionsTest, EverySettingHasOneEditorOnOnePage)
{
    for (const SettingRow& row : settingsTable())
        EXPECT_EQ(dialog->findChildren<OptionEditor*>(toQt(row.key)).size(), 1) << toQt(row.key).toStdString();
    for (const SettingBit& bit : settingBits()) {
        const QString name = toQt(bit.key) + QStringLiteral(":%1").arg(bit.bit, 0, 16);
        EXPECT_EQ(dialog->findChildren<OptionEditor*>(name).size(), 1) << name.toStdString();
    }
}

// What a number's editor takes is what its rule takes, at both ends.
TEST_F(OptionsTest, NumbersAreKeptWithinTheirBounds)
{
    int tried = 0;
    for (const SettingRow& row : settingsTable()) {
        OptionEditor* const found = editor(toQt(row.key));
        auto* const box = found == nullptr ? nullptr : found->findChild<QSpinBox*>();
        if (box == nullptr)
            continue;
        const auto& rule = std::get<NumberRule>(row.rule);
        for (const int wanted : {box->maximum(), box->minimum()}) {
            box->setValue(wanted);
            EXPECT_EQ(static_cast<int>(storedNumber(rule, settings())), wanted) << toQt(row.key).toStdString();
        }
        ++tried;
    }
    EXPECT_GE(tried, 14);

    auto* const timeout = control<QSpinBox>("msBGTextTimeout");
    timeout->setValue(500);
    EXPECT_EQ(settings().extractionTimeoutMs, 0u);
    EXPECT_EQ(timeout->value(), 0) << "shows what was made of it";
}

TEST_F(OptionsTest, TextsTicksAndChoicesReachTheSettings)
{
    auto* const mask = control<QLineEdit>("szFileCountRule");
    mask->selectAll();
    QTest::keyClicks(mask, QStringLiteral("*.TXT"));
    QTest::keyClick(mask, Qt::Key_Return);
    EXPECT_EQ(settings().folderMask, u"*.TXT");
    EXPECT_EQ(settings().fileTypes.back().masks, "*.txt") << "the category of folders goes by it";

    auto* const never = control<QLineEdit>("szGrepExcludeTypes");
    QTest::keyClicks(never, QStringLiteral("LOG, tmp"));
    QTest::keyClick(never, Qt::Key_Return);
    EXPECT_EQ(settings().extractionExcluded, (std::vector<std::u16string>{u"log", u"tmp"}));

    auto* const bits = control<QLineEdit>("binFileOpFlags");
    bits->selectAll();
    QTest::keyClicks(bits, QStringLiteral("0x80000002"));
    QTest::keyClick(bits, Qt::Key_Return);
    EXPECT_EQ(settings().fileOperationFlags, 0x80000002u);

    const bool gate = settings().pictureGate;
    control<QCheckBox>("bPictureGate")->toggle();
    EXPECT_NE(settings().pictureGate, gate);

    auto* const mode = control<QComboBox>("interfaceMode");
    mode->setCurrentIndex(0);
    Q_EMIT mode->activated(0);
    EXPECT_EQ(interfaceModeOf(settings()), InterfaceMode::beginner);
    EXPECT_EQ(settings().flags & (settings_flag::advanced | settings_flag::expert), 0u);
}

TEST_F(OptionsTest, TicksOfBitsChangeTheirBitAlone)
{
    for (const SettingBit& bit : settingBits()) {
        const QString name = toQt(bit.key) + QStringLiteral(":%1").arg(bit.bit, 0, 16);
        const std::uint32_t before = settings().*bit.word;
        auto* const box = editor(name)->findChild<QCheckBox*>();
        EXPECT_EQ(box->isChecked(), ((before & bit.bit) != 0) != bit.isOff) << name.toStdString();
        box->toggle();
        EXPECT_EQ(settings().*bit.word, before ^ bit.bit) << name.toStdString();
    }
    goTo(desktop_text::pageNotices);
    press("showAllNotices");
    EXPECT_EQ(settings().noticesOff, 0u);
}

TEST_F(OptionsTest, ListsAreChangedEntryByEntry)
{
    auto* const types = control<QTableWidget>("File types");
    ASSERT_GE(types->rowCount(), 5);
    types->item(0, 1)->setText(QStringLiteral("MP3, opus"));
    types->item(1, 1)->setText({});
    EXPECT_EQ(settings().fileTypes[0].masks, "mp3,opus");
    EXPECT_EQ(settings().fileTypes[1].masks, defaultCategories()[1].masks) << "an empty one takes its default";

    auto* const volumes = control<QTableWidget>("Excluded volumes");
    OptionEditor* const list = editor(QStringLiteral("Excluded volumes"));
    QTest::mouseClick(list->findChildren<QPushButton*>().at(0), Qt::LeftButton);
    volumes->item(0, 0)->setText(QStringLiteral("12ab-34CD"));
    EXPECT_EQ(settings().excludedVolumes, std::vector<std::uint32_t>{0x12AB34CD});
    volumes->selectRow(0);
    QTest::mouseClick(list->findChildren<QPushButton*>().at(1), Qt::LeftButton);
    EXPECT_TRUE(settings().excludedVolumes.empty());
}

TEST_F(OptionsTest, SearchFindsByLabelMeaningAndKey)
{
    namespace say = desktop_text;
    search("nhugefilemb");
    EXPECT_EQ(pagesInView(), QStringList(shown(say::pageComparing)));
    EXPECT_TRUE(editor(QStringLiteral("nHugeFileMB"))->isVisible());
    EXPECT_FALSE(editor(QStringLiteral("nTextSample"))->isVisible());
    search("small files");
    EXPECT_EQ(pagesInView(), QStringList(shown(say::pageScanning)));
    EXPECT_TRUE(editor(QStringLiteral("nTinyFile"))->isVisible());
    search("no option is called so");
    EXPECT_TRUE(pagesInView().isEmpty());
    search("");
    EXPECT_EQ(pagesInView().size(), 8);
}

TEST_F(OptionsTest, SearchFindsByWordsThatMeanMuchTheSame)
{
    namespace say = desktop_text;
    for (const char* const typed : {"trash", "Recycle bin", "deleting"}) {
        SCOPED_TRACE(typed);
        search(typed);
        EXPECT_TRUE(pagesInView().contains(shown(say::pageCleanUp)));
        EXPECT_FALSE(pagesInView().contains(shown(say::pageScanning)));
    }
    search("photo");
    EXPECT_FALSE(editor(QStringLiteral("bPictureGate"))->parentWidget()->isHidden()) << "it speaks of pictures";
    EXPECT_TRUE(editor(QStringLiteral("msSongStart"))->parentWidget()->isHidden());
    search("sprache");
    EXPECT_EQ(pagesInView(), QStringList(shown(say::pageGeneral))) << "who cannot read the language in force";
}

TEST_F(OptionsTest, EnterEndsAnEntryAndPressesNothing)
{
    QWidget& dialog = *editor(QStringLiteral("nHugeFileMB"))->window();
    search("text viewer");
    for (const QPushButton* const button : dialog.findChildren<QPushButton*>())
        EXPECT_FALSE(button->isDefault()) << button->text().toStdString();
}

TEST_F(OptionsTest, ResetTakesTheDefaultsOfItsPageAlone)
{
    control<QSpinBox>("nHugeFileMB")->setValue(33);
    control<QSpinBox>("nTinyFile")->setValue(9'000);
    goTo(desktop_text::pageComparing);
    press("optionsReset");
    auto* const question = dialog->findChild<QMessageBox*>(QStringLiteral("optionsResetQuestion"));
    ASSERT_NE(question, nullptr);
    QTest::mouseClick(question->button(QMessageBox::Yes), Qt::LeftButton);
    EXPECT_EQ(settings().hugeFile.bytes, 10u * 1'048'576u);
    EXPECT_EQ(control<QSpinBox>("nHugeFileMB")->value(), 10);
    EXPECT_EQ(settings().tinyFile.bytes, 9'000u);
}

TEST_F(OptionsTest, AChangeIsSavedSoonAndAlsoWhatNothingElseSaves)
{
    control<QSpinBox>("nHugeFileMB")->setValue(44);
    control<QSpinBox>("nIconSize")->setValue(48);
    const auto stored = [&](std::u16string_view key) {
        return world.ask<std::uint32_t>([key](Workbench& bench) {
            CXApplication& application = bench.desktop().application();
            const std::lock_guard lock(application.sharedState());
            std::uint32_t number = 0;
            const SettingsNode general(application.root(), generalSection, SettingsAccess::reading);
            static_cast<void>(general.readNumber(key, number));
            return number;
        });
    };
    EXPECT_TRUE(waitUntil([&] { return stored(u"nHugeFileMB") == 44u; }));
    EXPECT_EQ(stored(u"nIconSize"), 48u);
}

TEST(OptionsKept, AreAlsoThoseOfTheLastMoment)
{
    const auto kept = std::make_shared<MemorySettingsStore>();
    {
        DesktopWorld first({.kept = kept});
        ASSERT_TRUE(first.trigger("tools.options"));
        auto* const dialog = first.await<OptionsDialog>("optionsDialog");
        ASSERT_NE(dialog, nullptr);
        dialog->findChild<OptionEditor*>(QStringLiteral("nIconSize"))->findChild<QSpinBox*>()->setValue(48);
    }
    DesktopWorld next({.kept = kept});
    EXPECT_EQ(next.desktop().settings().iconSize, 48u) << "a setting that no save writes of its own accord";
}

TEST_F(OptionsTest, AMoveThatFailsIsToldAndLosesNothing)
{
    control<QSpinBox>("nHugeFileMB")->setValue(21);
    world.tree.write("obstacle", "a file where a folder would have to be");
    const std::filesystem::path folder = personalIniFile(world.platform.places()).parent_path();
    std::filesystem::create_directories(folder.parent_path());
    std::filesystem::remove_all(folder);
    std::filesystem::copy_file(world.tree.path("obstacle"), folder);

    auto* const box = control<QComboBox>("bPersistSettings");
    const int before = box->currentIndex();
    box->setCurrentIndex(2);
    Q_EMIT box->activated(2);
    auto* const message = world.await<QMessageBox>("optionsMessage");
    ASSERT_NE(message, nullptr);
    EXPECT_TRUE(message->text().contains(QStringLiteral("kelvane.ini"))) << message->text().toStdString();
    EXPECT_EQ(box->currentIndex(), before);
    EXPECT_EQ(settings().hugeFile.bytes, 21u * 1'048'576u);
    message->close();

    std::filesystem::remove(folder);
    box->setCurrentIndex(2);
    Q_EMIT box->activated(2);
    EXPECT_TRUE(waitUntil([&] { return settings().persistence == PersistenceMode::iniFile; }));
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(folder / "kelvane.ini"); }));
    EXPECT_EQ(settings().hugeFile.bytes, 21u * 1'048'576u);
}

TEST_F(OptionsTest, WhatWasExportedComesBackByAnImport)
{
    auto* const keeper = dialog->findChild<OptionsKeeper*>();
    const QString file = QString::fromStdString(world.tree.path("mine.ini").string());
    control<QSpinBox>("nHugeFileMB")->setValue(31);
    keeper->exportTo(file);
    auto* message = world.await<QMessageBox>("optionsMessage");
    ASSERT_NE(message, nullptr);
    EXPECT_TRUE(message->text().contains(file)) << message->text().toStdString();
    message->close();
    control<QSpinBox>("nHugeFileMB")->setValue(12);
    keeper->importFrom(file);
    EXPECT_TRUE(waitUntil([&] { return settings().hugeFile.bytes == 31u * 1'048'576u; }));
    EXPECT_TRUE(waitUntil([&] { return control<QSpinBox>("nHugeFileMB")->value() == 31; }));
    EXPECT_TRUE(waitUntil([&] { return dialog->findChild<QMessageBox*>() != nullptr; }));
    dialog->findChild<QMessageBox*>()->close();
    ASSERT_TRUE(waitUntil([&] { return dialog->findChild<QMessageBox*>() == nullptr; }));

    keeper->importFrom(QString::fromStdString(world.tree.path("nothing.ini").string()));
    message = world.await<QMessageBox>("optionsMessage");
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(message->icon(), QMessageBox::Warning) << message->text().toStdString();
    EXPECT_EQ(settings().hugeFile.bytes, 31u * 1'048'576u);
}

}  // namespace
}  // namespace kelvane::testing
