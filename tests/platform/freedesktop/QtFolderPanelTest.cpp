// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/QtFolderPanel.h"

#include "tests/doubles/TestFolder.h"

#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace tallowmere::test {
namespace {

using namespace Qt::Literals::StringLiterals;

class QtFolderPanelTest : public testing::Test
{
protected:
    QFileDialog *ask()
    {
        const auto before = dialogs();
        panel.ask({u"<b>First</b> line\nSecond line"_s, u"Grant Access"_s, folder.url()},
                  [this](const FileURL &picked) { answers.push_back(picked); });
        const auto now = dialogs();
        const auto added = std::find_if(now.begin(), now.end(), [&](auto *each) { return !before.contains(each); });
        return added == now.end() ? nullptr : *added;
    }
    [[nodiscard]] static QList<QFileDialog *> dialogs()
    {
        QList<QFileDialog *> found;
        for (QWidget *each : QApplication::topLevelWidgets()) {
            if (auto *dialog = qobject_cast<QFileDialog *>(each))
                found.append(dialog);
        }
        return found;
    }
    /// Runs what a closed panel has left to do: it deletes itself.
    static void expectNoneIsLeft()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(dialogs().isEmpty());
    }

    const TestFolder folder;
    QtFolderPanel panel;
    std::vector<FileURL> answers;
};

TEST_F(QtFolderPanelTest, standsFreeAndShowsTheMessageAsPlainTextAboveAllElse)
{
    QFileDialog *dialog = ask();
    ASSERT_NE(dialog, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog, 30'000));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(dialog->isModal());
    EXPECT_EQ(dialog->parentWidget(), nullptr);
    const auto labels = dialog->findChildren<QLabel *>();
    const auto message = std::find_if(labels.begin(), labels.end(), [](const QLabel *label) {
        return label->text() == u"<b>First</b> line\nSecond line"_s;
    });
    ASSERT_NE(message, labels.end());
    EXPECT_TRUE((*message)->isVisible());
    EXPECT_EQ((*message)->textFormat(), Qt::PlainText);
    EXPECT_GE((*message)->height(), 2 * (*message)->fontMetrics().height());
    for (const QWidget *each : dialog->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        if (each != *message && each->isVisible()) {
            EXPECT_GE(each->y(), (*message)->geometry().bottom()) << each->objectName().toStdString();
        }
    }
    dialog->reject();
    expectNoneIsLeft();
}

TEST_F(QtFolderPanelTest, picksFoldersOnlyBeginningInTheOneAskedFor)
{
    QFileDialog *dialog = ask();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
    EXPECT_EQ(dialog->directory().path(), QString::fromUtf8(folder.path()));
    const auto buttons = dialog->findChildren<QPushButton *>();
    const auto accept = std::find_if(buttons.begin(), buttons.end(),
                                     [](const auto *each) { return each->text() == u"Grant Access"_s; });
    ASSERT_NE(accept, buttons.end());
    EXPECT_TRUE((*accept)->isEnabled());
    QTest::mouseClick(*accept, Qt::LeftButton);
    EXPECT_EQ(answers, std::vector{folder.url()});
    expectNoneIsLeft();
}

TEST_F(QtFolderPanelTest, anotherFolderCanBePicked)
{
    const FileURL other = folder.makeFolder("other");
    QFileDialog *dialog = ask();
    ASSERT_NE(dialog, nullptr);
    dialog->selectFile(QString::fromUtf8(other.path()));
    QMetaObject::invokeMethod(dialog, "accept");
    EXPECT_EQ(answers, std::vector{other});
    expectNoneIsLeft();
}

TEST_F(QtFolderPanelTest, declinedOrClosedAnswersOnceWithNothing)
{
    ask()->reject();
    ask()->close();
    EXPECT_EQ(answers, (std::vector{FileURL(), FileURL()}));
    expectNoneIsLeft();
}

TEST_F(QtFolderPanelTest, eachQuestionHasAPanelOfItsOwn)
{
    QFileDialog *first = ask();
    QFileDialog *second = ask();
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    EXPECT_EQ(dialogs().size(), 2);
    second->reject();
    EXPECT_TRUE(first->isVisible());
    EXPECT_EQ(answers.size(), 1U);
    first->reject();
    EXPECT_EQ(answers.size(), 2U);
    expectNoneIsLeft();
}

} // namespace
} // namespace tallowmere::test
