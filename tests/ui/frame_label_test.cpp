#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

#include "ui/core/wrapped_label.h"

namespace kelvane::testing {
namespace {

TEST(WrappedLabel, IsSelectedByTheMouseAndCopied)
{
    WrappedLabel label("path");
    const QString path = QStringLiteral("/home/someone/<b>pictures</b>/with a name that takes several lines.jpg");
    label.setText(path);
    label.resize(120, label.heightForWidth(120));
    label.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&label));
    ASSERT_GT(label.height(), 3 * label.fontMetrics().lineSpacing()) << "it stands on several lines";
    EXPECT_EQ(label.focusPolicy(), Qt::NoFocus) << "the way by Tab passes it over";

    QTest::mousePress(&label, Qt::LeftButton, {}, QPoint(0, 1));
    QTest::mouseMove(&label, QPoint(label.width() - 1, label.height() - 1));
    QMouseEvent drag(QEvent::MouseMove, QPointF(label.width() - 1, label.height() - 1),
                     label.mapToGlobal(QPointF(label.width() - 1, label.height() - 1)), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(&label, &drag);
    QTest::mouseRelease(&label, Qt::LeftButton, {}, QPoint(label.width() - 1, label.height() - 1));
    EXPECT_EQ(label.selection(), path);
    QTest::keyClick(&label, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), path);

    QTest::mouseDClick(&label, Qt::LeftButton, {},
                       QPoint(label.fontMetrics().horizontalAdvance(QStringLiteral("/ho")), 3));
    EXPECT_EQ(label.selection(), QStringLiteral("home"));
    label.setText(QStringLiteral("another text, of which nothing was selected"));
    EXPECT_EQ(label.selection(), QString());
    QTest::keyClick(&label, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(label.selection(), label.text());
}

}  // namespace
}  // namespace kelvane::testing
