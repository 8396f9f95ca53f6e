#include "ui/processes/ProcessListView.h"

#include <QAccessible>
#include <QClipboard>
#include <QDateTime>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include "processes/qt/ProcessesController.h"
#include "ui/panel/PanelModel.h"
#include "ui/panel/ScrollIndicator.h"
#include "ui/processes/ProcessRowPainter.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

using processes::ProcessTexts::Action;
namespace Texts = processes::ProcessTexts;

namespace {

QString qs(const std::string& s) { return QString::fromStdString(s); }

// How long rows hold still after the pointer last moved: long enough to aim and click, short
// enough that a pointer left on the list does not freeze its order.
constexpr int holdAfterMoveMs = 4000;

int utcOffsetAt(metrics::Timestamp t) {
    return QDateTime::fromSecsSinceEpoch(qint64(metrics::unixSeconds(t))).offsetFromUtc();
}

}  // namespace

ProcessListView::ProcessListView(processes::ProcessesController& controller,
                                 const PanelModel& model, const ThemeStore& theme, QWidget* parent)
    : QAbstractScrollArea(parent), controller_(controller), model_(model), theme_(theme) {
    setObjectName(QStringLiteral("processList"));
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Processes"));
    // Every pixel is painted here, which lets a scroll move the drawn rows instead of
    // repainting them.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setMouseTracking(true);
    verticalScrollBar()->setSingleStep(Metrics::listRowHeight);
    geometry_.rowHeight = Metrics::listRowHeight;
    new ScrollIndicator(*this, theme_);
    holdTimer_.setSingleShot(true);
    holdTimer_.setInterval(holdAfterMoveMs);
    connect(&holdTimer_, &QTimer::timeout, this, [this] { controller_.setHeld(false); });
    connect(&controller_, &processes::ProcessesController::changed, this,
            &ProcessListView::refresh);
    connect(&theme_, &ThemeStore::changed, viewport(), qOverload<>(&QWidget::update));
    refresh();
}

int ProcessListView::offset() const { return verticalScrollBar()->value(); }

void ProcessListView::setOpened(std::int32_t pid, bool opened) {
    if (opened == isOpened(pid)) return;
    if (opened)
        opened_.insert(pid);
    else
        opened_.erase(pid);
    refresh();
}

void ProcessListView::refresh() {
    const auto& table = controller_.table();
    geometry_.count = table.size();
    geometry_.opened.clear();
    const metrics::Timestamp now = model_.now();
    for (auto it = opened_.begin(); it != opened_.end();) {
        if (const auto index = table.indexOf(*it)) {
            const auto& row = *table.at(*index).row;
            const auto lines = Texts::details(row, controller_.details(row), now, utcOffsetAt(now));
            geometry_.opened.push_back(
                {*index, double(ProcessRowPainter::detailHeight(lines.size()))});
            ++it;
        } else {
            const bool listed = std::any_of(table.rows().begin(), table.rows().end(),
                                            [&](const auto& row) { return row.pid == *it; });
            it = listed ? std::next(it) : opened_.erase(it);  // filtered out, or gone for good
        }
    }
    std::sort(geometry_.opened.begin(), geometry_.opened.end(),
              [](const auto& a, const auto& b) { return a.index < b.index; });
    updateRange();
    if (pointer_) hovered_ = rowAt(*pointer_);
    announceSelection();
    viewport()->update();
}

void ProcessListView::updateRange() {
    const int page = viewport()->height();
    verticalScrollBar()->setPageStep(page);
    verticalScrollBar()->setRange(0, std::max(0, int(std::ceil(geometry_.total())) - page));
}

void ProcessListView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    updateRange();
}

void ProcessListView::scrollContentsBy(int, int dy) {
    viewport()->scroll(0, dy);
    if (pointer_) setHovered(rowAt(*pointer_));
}

std::optional<std::size_t> ProcessListView::rowAt(const QPointF& pos) const {
    return geometry_.indexAt(pos.y() + offset());
}

QRectF ProcessListView::lineRect(std::size_t index) const {
    return QRectF(Metrics::listInset, geometry_.top(index) - offset(),
                  viewport()->width() - 2 * Metrics::listInset, geometry_.rowHeight);
}

QRectF ProcessListView::detailsRect(std::size_t index) const {
    const QRectF line = lineRect(index);
    return QRectF(line.left(), line.bottom(), line.width(),
                  geometry_.height(index) - line.height());
}

Action ProcessListView::actionFor(std::size_t index) const {
    const auto entry = controller_.table().at(index);
    return Texts::action(controller_.block(*entry.row), controller_.flow(*entry.row), entry.ended);
}

void ProcessListView::setHovered(std::optional<std::size_t> index) {
    if (index == hovered_) return;
    hovered_ = index;
    viewport()->update();
}

void ProcessListView::paintEvent(QPaintEvent* event) {
    ++paints_;
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(viewport());
    p.fillRect(event->rect(), pal.surface);
    p.setRenderHint(QPainter::Antialiasing);
    const auto& table = controller_.table();
    if (table.size() == 0) {
        p.setFont(theme.type().body);
        p.setPen(pal.textSecondary);
        p.drawText(QRectF(viewport()->rect()).adjusted(Metrics::margin, 0, -Metrics::margin, 0),
                   Qt::AlignCenter | Qt::TextWordWrap,
                   qs(Texts::emptyList(controller_.hasSample(), table.query().text())));
        return;
    }
    const metrics::Timestamp now = model_.now();
    const int offsetFromUtc = utcOffsetAt(now);
    const bool focused = hasFocus();
    const auto selected = table.selectedIndex();
    const double bottom = offset() + event->rect().bottom() + 1;
    auto first = geometry_.indexAt(offset() + event->rect().top());
    for (std::size_t i = first.value_or(table.size());
         i < table.size() && geometry_.top(i) < bottom; ++i) {
        const auto entry = table.at(i);
        const bool opened = geometry_.height(i) > geometry_.rowHeight;
        const QRectF line = lineRect(i);
        if (opened) {
            p.setPen(Qt::NoPen);
            p.setBrush(pal.chip);
            p.drawRoundedRect(line.united(detailsRect(i)), Metrics::listRowRadius,
                              Metrics::listRowRadius);
        }
        RowLook look;
        look.row = entry.row;
        look.ended = entry.ended;
        look.status = Texts::status(controller_.flow(*entry.row), entry.ended);
        look.selected = selected == i;
        look.focused = focused;
        look.hovered = hovered_ == i && !opened;
        ProcessRowPainter::paintRow(p, theme, line, look);
        if (opened) {
            const auto lines =
                Texts::details(*entry.row, controller_.details(*entry.row), now, offsetFromUtc);
            ProcessRowPainter::paintDetails(p, theme, detailsRect(i), lines, actionFor(i));
        }
    }
}

void ProcessListView::revealSelection() {
    const auto index = controller_.table().selectedIndex();
    if (!index) return;
    const int top = int(geometry_.top(*index));
    const int bottom = int(std::ceil(geometry_.top(*index) + geometry_.height(*index)));
    QScrollBar* bar = verticalScrollBar();
    if (top < bar->value())
        bar->setValue(top);
    else if (bottom > bar->value() + viewport()->height())
        bar->setValue(bottom - viewport()->height());
}

void ProcessListView::act(std::int32_t pid, Action::Button button) {
    switch (button) {
        case Action::Button::quit:
        case Action::Button::tryAgain:
            controller_.quit(pid);
            break;
        case Action::Button::forceQuit:
            controller_.askForce(pid);
            break;
        case Action::Button::none:
            break;
    }
}

void ProcessListView::keyPressEvent(QKeyEvent* event) {
    const auto& table = controller_.table();
    const int page = std::max(1, viewport()->height() / Metrics::listRowHeight - 1);
    const auto selectedPid = table.selectedPid();
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown: {
            const int step = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down ? 1 : page;
            const bool up = event->key() == Qt::Key_Up || event->key() == Qt::Key_PageUp;
            controller_.moveSelection(up ? -step : step);
            revealSelection();
            return;
        }
        case Qt::Key_Home:
        case Qt::Key_End:
            controller_.selectEdge(event->key() == Qt::Key_End);
            revealSelection();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            if (selectedPid) setOpened(*selectedPid, !isOpened(*selectedPid));
            revealSelection();
            return;
        case Qt::Key_Right:
        case Qt::Key_Left:
            if (selectedPid) setOpened(*selectedPid, event->key() == Qt::Key_Right);
            revealSelection();
            return;
        case Qt::Key_Delete:
            if (const auto index = table.selectedIndex()) {
                const Action action = actionFor(*index);
                if (action.enabled) act(*selectedPid, action.button);
            }
            return;
        default:
            break;
    }
    const auto mods = event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    if (mods == Qt::NoModifier && !event->text().isEmpty() && event->text().at(0).isPrint()) {
        emit typed(event->text());
        return;
    }
    QAbstractScrollArea::keyPressEvent(event);
}

void ProcessListView::mousePressEvent(QMouseEvent* event) {
    holdRows();
    const auto index = rowAt(event->position());
    if (!index) return;
    const auto& table = controller_.table();
    const std::int32_t pid = table.at(*index).row->pid;
    if (event->button() == Qt::LeftButton && isOpened(pid)) {
        const Action action = actionFor(*index);
        if (ProcessRowPainter::actionButtonRect(theme_.theme(), detailsRect(*index), action)
                .contains(event->position())) {
            if (action.enabled) act(pid, action.button);
            return;
        }
        if (detailsRect(*index).contains(event->position())) {
            controller_.select(pid);
            return;
        }
    }
    controller_.select(pid);
    if (event->button() == Qt::LeftButton) setOpened(pid, !isOpened(pid));
}

void ProcessListView::mouseDoubleClickEvent(QMouseEvent* event) { mousePressEvent(event); }

void ProcessListView::holdRows() {
    controller_.setHeld(true);
    holdTimer_.start();
}

void ProcessListView::mouseMoveEvent(QMouseEvent* event) {
    pointer_ = event->position();
    holdRows();
    setHovered(rowAt(event->position()));
}

void ProcessListView::contextMenuEvent(QContextMenuEvent* event) {
    const auto index = rowAt(event->pos());
    if (!index) return;
    const auto entry = controller_.table().at(*index);
    const std::int32_t pid = entry.row->pid;
    controller_.select(pid);
    const Action action = actionFor(*index);
    QMenu menu(this);
    if (action.button != Action::Button::none) {
        QAction* item = menu.addAction(qs(action.buttonText));
        item->setEnabled(action.enabled);
        connect(item, &QAction::triggered, this,
                [this, pid, button = action.button] { act(pid, button); });
    } else if (!action.note.empty()) {
        menu.addAction(qs(action.note))->setEnabled(false);
    }
    menu.addSeparator();
    connect(menu.addAction(isOpened(pid) ? QStringLiteral("Hide Details")
                                         : QStringLiteral("Show Details")),
            &QAction::triggered, this, [this, pid] { setOpened(pid, !isOpened(pid)); });
    if (entry.row->executablePath)
        connect(menu.addAction(QStringLiteral("Copy Path")), &QAction::triggered, this,
                [path = qs(*entry.row->executablePath)] {
                    QGuiApplication::clipboard()->setText(path);
                });
    connect(menu.addAction(QStringLiteral("Copy PID")), &QAction::triggered, this,
            [pid] { QGuiApplication::clipboard()->setText(QString::number(pid)); });
    menu.exec(event->globalPos());
}

void ProcessListView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    if (!controller_.table().selectedPid()) controller_.moveSelection(1);
    viewport()->update();
}

void ProcessListView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

bool ProcessListView::viewportEvent(QEvent* event) {
    switch (event->type()) {
        case QEvent::Enter:
            // Rows hold still under the pointer, so a click lands on the row aimed at.
            holdRows();
            break;
        case QEvent::Leave:
            pointer_.reset();
            setHovered(std::nullopt);
            holdTimer_.stop();
            controller_.setHeld(false);
            break;
        case QEvent::ToolTip: {
            auto* help = static_cast<QHelpEvent*>(event);
            const auto index = rowAt(help->pos());
            if (!index) {
                QToolTip::hideText();
                return true;
            }
            const auto entry = controller_.table().at(*index);
            const metrics::Timestamp now = model_.now();
            QStringList lines;
            for (const auto& line :
                 Texts::details(*entry.row, controller_.details(*entry.row), now, utcOffsetAt(now)))
                lines << qs(line.label + ": " + line.value);
            const Action action = actionFor(*index);
            if (action.locked) lines << qs(action.note);
            QToolTip::showText(help->globalPos(), lines.join(QLatin1Char('\n')), viewport());
            return true;
        }
        default:
            break;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void ProcessListView::announceSelection() {
    const auto& table = controller_.table();
    const auto index = table.selectedIndex();
    if (!index) {
        announced_.reset();
        return;
    }
    const auto entry = table.at(*index);
    const QString text = qs(
        Texts::accessibleRow(*entry.row, Texts::status(controller_.flow(*entry.row), entry.ended)));
    if (text != accessibleDescription()) setAccessibleDescription(text);
    // Readings change with every sample; a screen reader hears of a new selection only.
    if (announced_ == entry.row->pid) return;
    announced_ = entry.row->pid;
    if (isVisible()) {
        QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&changed);
    }
}

}  // namespace trotlet::ui
