// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/ManualPageView.h"

#include <QCoreApplication>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QProcess>
#include <QProcessEnvironment>
#include <QScrollBar>

#include <cmath>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kColumns = 80;
constexpr double kMargin = 12; // points around the text

} // namespace

ManualPageView::ManualPageView(const QString &manFolder, QWidget *parent)
    : QPlainTextEdit(parent), m_man(new QProcess(this))
{
    setReadOnly(true);
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(true);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setAccessibleName(tr("Manual Page"));
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    document()->setDocumentMargin(kMargin);
    const double text = QFontMetricsF(font()).horizontalAdvance(QString(kColumns, u'0'));
    const double margins = 2 * document()->documentMargin();
    setMinimumWidth(static_cast<int>(std::ceil(text + margins)) + verticalScrollBar()->sizeHint().width());
    startMan(manFolder);
}

ManualPageView::~ManualPageView()
{
    m_man->disconnect(this); // it is ended with us, and has nothing to tell any more
}

QString ManualPageView::besideTheProgram()
{
    return QCoreApplication::applicationDirPath() + u"/../share/man"_s;
}

void ManualPageView::startMan(const QString &manFolder)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const auto &name : {u"MAN_KEEP_FORMATTING"_s, u"MANOPT"_s}) // the user's, for a terminal
        environment.remove(name);
    environment.insert(u"MANWIDTH"_s, QString::number(kColumns));
    // What follows an empty entry is the system's own path.
    environment.insert(u"MANPATH"_s, manFolder + u':' + environment.value(u"MANPATH"_s));
    m_man->setProcessEnvironment(environment);
    connect(m_man, &QProcess::finished, this, &ManualPageView::showPage);
    connect(m_man, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            showThatThereIsNone();
    });
    m_man->start(u"man"_s, {u"-P"_s, u"cat"_s, u"-E"_s, u"UTF-8"_s, u"--nj"_s, u"--nh"_s, u"tallowmere"_s},
                 QIODevice::ReadOnly);
}

void ManualPageView::showPage()
{
    const QByteArray page = m_man->readAllStandardOutput();
    if (page.trimmed().isEmpty())
        return showThatThereIsNone();
    setPlainText(QString::fromUtf8(page));
}

void ManualPageView::showThatThereIsNone()
{
    setPlainText(tr("The manual page is not installed."));
}

} // namespace tallowmere
