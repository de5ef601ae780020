#include "app/shell/log_view.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QMenu>

#include <algorithm>

namespace {

constexpr int kAir = 2;        // above and below a line
constexpr int kSideSpace = 6;  // left and right of it

}  // namespace

int LogView::Model::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(lines.size());
}

QVariant LogView::Model::data(const QModelIndex& index, int role) const {
    if (role == Qt::DisplayRole) return lines.value(index.row());
    if (role == Qt::SizeHintRole) return lineSize;
    return {};
}

void LogView::Model::Append(const QStringList& more) {
    const int first = static_cast<int>(lines.size());
    beginInsertRows({}, first, first + static_cast<int>(more.size()) - 1);
    lines += more;
    endInsertRows();
}

LogView::LogView(QWidget* parent) : QListView(parent) {
    setModel(&lineModel);
    setUniformItemSizes(true);  // the model has one size for all: a layout of many lines takes no time
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setTextElideMode(Qt::ElideNone);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
}

void LogView::Append(const QStringList& lines) {
    if (lines.isEmpty()) return;
    Widen(lines);
    lineModel.Append(lines);
    const QModelIndex last = lineModel.index(lineModel.rowCount() - 1);
    selectionModel()->setCurrentIndex(last, QItemSelectionModel::ClearAndSelect);
    scrollToBottom();
}

void LogView::Widen(const QStringList& lines) {
    const QFontMetrics metrics = fontMetrics();
    int width = lineModel.lineSize.width();
    for (const QString& line : lines)
        width = std::max(width, metrics.horizontalAdvance(line) + 2 * kSideSpace);
    lineModel.lineSize = QSize(width, metrics.height() + 2 * kAir);
}

QString LogView::SelectedText() const {
    QModelIndexList selected = selectionModel()->selectedIndexes();
    std::sort(selected.begin(), selected.end());
    QStringList lines;
    for (const QModelIndex& index : selected) lines.append(index.data().toString());
    const bool isSingle = lines.size() < 2;
    return lines.join(u'\n') + (isSingle ? QString() : QStringLiteral("\n"));
}

void LogView::Copy() {
    const QString text = SelectedText();
    if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

void LogView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy))
        Copy();
    else
        QListView::keyPressEvent(event);
}

void LogView::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    QAction* const copy = menu.addAction(tr("&Copy"), this, &LogView::Copy);
    copy->setShortcut(QKeySequence::Copy);
    copy->setEnabled(selectionModel()->hasSelection());
    QAction* const all = menu.addAction(tr("Select &all"), this, &LogView::selectAll);
    all->setShortcut(QKeySequence::SelectAll);
    all->setEnabled(lineModel.rowCount() > 0);
    menu.exec(event->globalPos());
}

void LogView::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
    lineModel.lineSize = {};
    Widen(lineModel.lines);
    scheduleDelayedItemsLayout();
}
