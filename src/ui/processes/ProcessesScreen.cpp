#include "ui/processes/ProcessesScreen.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QVBoxLayout>

#include "mascot/ProcessDisplayName.h"
#include "processes/ProcessTexts.h"
#include "processes/qt/ProcessesController.h"
#include "ui/processes/ColumnHeader.h"
#include "ui/processes/ForceQuitSheet.h"
#include "ui/processes/ProcessListView.h"
#include "ui/processes/SearchField.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

// The screen fills the panel to its height limit: a process list is worth every row.
constexpr int preferredHeight = 560;
// Inside the card: the rows' side inset clears the rounded corners, the bottom one too.
constexpr int cardSide = 2;
constexpr int cardBottom = 8;

// The card that holds the header and the list: the surface with a hairline, in the panel's
// card shape.
class ListCard : public QWidget {
public:
    ListCard(const ThemeStore& theme, QWidget* parent) : QWidget(parent), theme_(theme) {}

protected:
    void paintEvent(QPaintEvent*) override {
        const Palette& pal = theme_.theme().palette();
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(QPen(pal.border, 1));
        p.setBrush(pal.surface);
        p.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Metrics::cardRadius,
                          Metrics::cardRadius);
    }

private:
    const ThemeStore& theme_;
};

}  // namespace

ProcessesScreen::ProcessesScreen(processes::ProcessesController& controller,
                                 const PanelModel& model, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), controller_(controller), theme_(theme) {
    setObjectName(QStringLiteral("processesScreen"));
    setAccessibleName(QStringLiteral("Processes"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Metrics::margin, 0, Metrics::margin, 0);
    column->setSpacing(Metrics::spacing);

    search_ = new SearchField(theme_, this);
    column->addWidget(search_);

    card_ = new ListCard(theme_, this);
    auto* inside = new QVBoxLayout(card_);
    inside->setContentsMargins(cardSide, 0, cardSide, cardBottom);
    inside->setSpacing(0);
    header_ = new ColumnHeader(theme_, card_);
    list_ = new ProcessListView(controller_, model, theme_, card_);
    inside->addWidget(header_);
    inside->addWidget(list_, 1);
    column->addWidget(card_, 1);

    sheet_ = new ForceQuitSheet(theme_, this);

    setTabOrder(search_, header_);
    setTabOrder(header_, list_);

    search_->setText(QString::fromStdString(controller_.table().query().text()));
    header_->setSort(controller_.table().sort());
    connect(search_, &SearchField::textChanged, this,
            [this](const QString& text) { controller_.setQuery(text.toStdString()); });
    connect(search_, &SearchField::leaveDownward, this, [this] {
        list_->setFocus(Qt::TabFocusReason);
        list_->revealSelection();
    });
    connect(header_, &ColumnHeader::sortChosen, this,
            [this](processes::ProcessSort sort) { controller_.setSort(sort); });
    connect(list_, &ProcessListView::typed, this, [this](const QString& text) {
        // Not a shortcut focus, which would select the text for the letter to replace.
        search_->edit().setFocus(Qt::OtherFocusReason);
        search_->edit().end(false);
        search_->edit().insert(text);
    });
    connect(&controller_, &processes::ProcessesController::forceQuitAsked, this,
            [this](std::int32_t pid) {
                const auto index = controller_.table().indexOf(pid);
                if (!index) return;
                const auto name =
                    mascot::ProcessDisplayName::of(*controller_.table().at(*index).row);
                sheet_->ask(pid, QString::fromStdString(name.name));
            });
    connect(sheet_, &ForceQuitSheet::confirmed, this, [this](std::int32_t pid) {
        controller_.confirmForce(pid);
        list_->setFocus(Qt::OtherFocusReason);
    });
    connect(sheet_, &ForceQuitSheet::cancelled, this, [this](std::int32_t pid) {
        controller_.cancelForce(pid);
        list_->setFocus(Qt::OtherFocusReason);
    });
    connect(&controller_, &processes::ProcessesController::changed, this,
            &ProcessesScreen::followController);
    connect(&theme_, &ThemeStore::changed, this, qOverload<>(&QWidget::update));
    followController();
}

QSize ProcessesScreen::sizeHint() const { return QSize(Metrics::panelWidth, preferredHeight); }

void ProcessesScreen::followController() {
    const auto& table = controller_.table();
    search_->setPlaceholder(
        QString::fromStdString(processes::ProcessTexts::searchPlaceholder(table.totalCount())));
    search_->setNote(QString::fromStdString(processes::ProcessTexts::matchCount(
        table.size(), table.totalCount(), table.query().text())));
    if (header_->sort() != table.sort()) header_->setSort(table.sort());
    // The question goes away once there is nothing left to ask: the process ended meanwhile.
    if (sheet_->isVisible()) {
        const auto index = controller_.table().indexOf(sheet_->pid());
        const auto* flow = index ? controller_.flow(*controller_.table().at(*index).row) : nullptr;
        if (!flow || flow->stage() != processes::QuitStage::confirmingForce) {
            sheet_->hide();
            list_->setFocus(Qt::OtherFocusReason);
        }
    }
}

void ProcessesScreen::resizeEvent(QResizeEvent*) {
    if (sheet_->isVisible()) sheet_->setGeometry(rect());
}

void ProcessesScreen::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Find)) {
        search_->edit().setFocus(Qt::ShortcutFocusReason);
        search_->edit().selectAll();
        return;
    }
    // Escape from the list undoes a search before it closes the panel.
    if (event->key() == Qt::Key_Escape && !search_->text().isEmpty()) {
        search_->setText({});
        return;
    }
    QWidget::keyPressEvent(event);
}

void ProcessesScreen::showEvent(QShowEvent*) { emit shownChanged(true); }
void ProcessesScreen::hideEvent(QHideEvent*) { emit shownChanged(false); }

}  // namespace trotlet::ui
