#include "ui/details/DetailView.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <cmath>

#include "panel/PanelTabs.h"
#include "ui/cards/CardView.h"
#include "ui/details/ActionButton.h"
#include "ui/details/ChartView.h"
#include "ui/details/DetailSection.h"
#include "ui/details/RangeSwitch.h"
#include "ui/overview/OverviewView.h"
#include "ui/panel/PanelModel.h"
#include "ui/panel/PanelWindow.h"
#include "ui/panel/ScrollIndicator.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

using Kind = panel::DetailBlock::Kind;

QString qs(const std::string& s) { return QString::fromStdString(s); }

qreal lineHeight(const QFont& font) { return std::ceil(QFontMetricsF(font).height()); }

bool isChart(const panel::DetailBlock& b) {
    return b.kind == Kind::chart || b.kind == Kind::pressure;
}

}  // namespace

// The reading as the card says it, with its caption, or the stand-in.
class DetailHeadline : public QWidget {
public:
    DetailHeadline(const ThemeStore& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

    bool setContent(const panel::DetailContent& c) {
        if (c.title == title_ && c.symbol == symbol_ && c.color == color_ && c.value == value_ &&
            c.unit == unit_ && c.caption == caption_ && c.standIn == standIn_ &&
            c.level == level_ && c.headlineSymbol == headlineSymbol_)
            return false;
        headlineSymbol_ = c.headlineSymbol;
        title_ = c.title;
        symbol_ = c.symbol;
        color_ = c.color;
        value_ = c.value;
        unit_ = c.unit;
        caption_ = c.caption;
        standIn_ = c.standIn;
        level_ = c.level;
        setAccessibleName(qs(title_));
        setAccessibleDescription(qs(c.accessibleValue));
        setFixedHeight(heightFor(Metrics::gridWidth));
        update();
        return true;
    }

    int heightFor(int width) const {
        const TypeScale& type = theme_.theme().type();
        int h = 0;
        if (standIn_) {
            h += kEmptyTop + kEmptyIcon + Metrics::spacingLarge;
            h += int(std::ceil(QFontMetricsF(type.body)
                                   .boundingRect(QRectF(0, 0, width - 2 * kEmptyInset, 1e6),
                                                 Qt::TextWordWrap, qs(*standIn_))
                                   .height()));
            return h + kEmptyTop / 2;
        }
        h += int(lineHeight(type.headline));
        if (!caption_.empty()) h += int(lineHeight(type.body));
        return h;
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const Theme& theme = theme_.theme();
        const Palette& pal = theme.palette();
        const TypeScale& type = theme.type();
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        qreal y = 0;
        if (standIn_) {
            // An empty state: the kind's symbol, quiet, over the sentence that explains it.
            Icons::paint(p, QRectF((width() - kEmptyIcon) / 2.0, kEmptyTop, kEmptyIcon, kEmptyIcon),
                         symbol_, pal.textTertiary);
            p.setFont(type.body);
            p.setPen(pal.textSecondary);
            y = kEmptyTop + kEmptyIcon + Metrics::spacingLarge;
            p.drawText(QRectF(kEmptyInset, y, width() - 2 * kEmptyInset, height() - y),
                       Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, qs(*standIn_));
            return;
        }
        if (!headlineSymbol_.empty()) {
            const qreal side = lineHeight(type.headline) + lineHeight(type.body);
            Icons::paint(p, QRectF(width() - side, 0, side, side), headlineSymbol_,
                         pal.named(color_));
        }
        const QFontMetricsF dm(type.headline);
        const qreal baseline = y + dm.ascent();
        p.setFont(type.headline);
        p.setPen(level_ >= panel::Level::hot ? pal.level(level_) : pal.text);
        const QString value = qs(value_);
        p.drawText(QPointF(0, baseline), value);
        p.setFont(type.unit);
        p.setPen(pal.textSecondary);
        p.drawText(QPointF(dm.horizontalAdvance(value) + 3, baseline), qs(unit_));
        y += lineHeight(type.headline);
        if (!caption_.empty()) {
            p.setFont(type.body);
            p.drawText(QRectF(0, y, width(), lineHeight(type.body)),
                       Qt::AlignLeft | Qt::AlignVCenter,
                       QFontMetricsF(type.body).elidedText(qs(caption_), Qt::ElideRight, width()));
        }
    }

private:
    const ThemeStore& theme_;
    static constexpr int kEmptyTop = 24;
    static constexpr int kEmptyIcon = 36;
    static constexpr int kEmptyInset = 24;
    std::string title_, symbol_, color_, value_, unit_, caption_, headlineSymbol_;
    std::optional<std::string> standIn_;
    panel::Level level_ = panel::Level::calm;
};

DetailView::DetailView(panel::MetricDetail detail, PanelModel& model, const ThemeStore& theme,
                       QWidget* parent)
    : QWidget(parent), detail_(detail), model_(model), theme_(theme) {
    setObjectName(QStringLiteral("detail-") +
                  QString::fromUtf8(panel::MetricDetailNames[std::size_t(detail)].data()));
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(qs(panel::detailTitle(detail)) + QStringLiteral(" details"));
    range_ = model_.dayHistory() ? model_.chartRange() : panel::ChartRange::live;

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    auto* top = new QHBoxLayout;
    top->setContentsMargins(Metrics::margin - Metrics::spacingSmall, 0, Metrics::margin, 0);
    // The way back carries the screen's name, as the Paw Report's does.
    back_ = new ActionButton(qs(panel::detailTitle(detail)), theme_, this);
    back_->setObjectName(QStringLiteral("back"));
    back_->setSymbol("chevron.left");
    back_->setStyle(ActionButton::Style::back);
    back_->setAccessibleName(QStringLiteral("Back to the Overview"));
    back_->setAccessibleDescription(qs(panel::detailTitle(detail)) + QStringLiteral(" (Escape)"));
    connect(back_, &ActionButton::clicked, this, &DetailView::backRequested);
    auto* topBar = new QWidget(this);
    topBar->setFixedHeight(Metrics::topBarHeight);
    top->addWidget(back_);
    top->addStretch(1);
    topBar->setLayout(top);
    outer->addWidget(topBar);

    scroll_ = new QScrollArea(this);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setWidgetResizable(true);
    scroll_->setFocusPolicy(Qt::NoFocus);
    scroll_->viewport()->setAutoFillBackground(false);
    outer->addWidget(scroll_, 1);
    new ScrollIndicator(*scroll_, theme_);

    content_ = panel::describeDetail(detail_, model_.detailInputs());
    build();

    connect(&model_, &PanelModel::sampleChanged, this, [this] { refresh(); });
    connect(&model_, &PanelModel::weatherChanged, this, [this] { refresh(); });
    connect(&model_, &PanelModel::walletChanged, this, [this] { refresh(); });
    connect(&model_, &PanelModel::publicAddressChanged, this, [this] { refresh(); });
    connect(&theme_, &ThemeStore::changed, this, [this] { update(); });
}

void DetailView::build() {
    // The old body goes as a whole: the charts and sections are its children.
    charts_.clear();
    sections_.clear();
    rangeSwitch_ = nullptr;
    if (body_) body_->deleteLater();
    body_ = new QWidget;
    body_->setAutoFillBackground(false);
    column_ = new QVBoxLayout(body_);
    column_->setContentsMargins(Metrics::margin, Metrics::spacingSmall, Metrics::margin,
                                Metrics::margin);
    column_->setSpacing(Metrics::sectionGap);
    // In the scroll area from the start, so the focus chain below links widgets of one window.
    scroll_->setWidget(body_);
    headline_ = new DetailHeadline(theme_, body_);
    headline_->setContent(content_);
    column_->addWidget(headline_);

    QWidget* previous = back_;
    for (const auto& block : content_.blocks) {
        QWidget* widget = nullptr;
        if (isChart(block)) {
            auto* chart = new ChartView(block.title, *block.chart, block.kind == Kind::pressure,
                                        model_, theme_, body_);
            chart->setAccentName(content_.color);
            chart->setRange(range_);
            if (block.kind == Kind::pressure) chart->setNote(block.note, block.level);
            chart->setFixedHeight(chart->sizeHint().height());
            if (!rangeSwitch_ && block.kind == Kind::chart && model_.dayHistory()) {
                rangeSwitch_ = new RangeSwitch(theme_);
                rangeSwitch_->setRange(range_);
                connect(rangeSwitch_, &RangeSwitch::rangeChosen, this, &DetailView::setRange);
                chart->setHeaderWidget(rangeSwitch_);
                setTabOrder(previous, rangeSwitch_);
                previous = rangeSwitch_;
            }
            charts_.push_back(chart);
            widget = chart;
        } else {
            auto* section = new DetailSection(block, content_.color, theme_, body_);
            if (section->button())
                connect(section, &DetailSection::buttonClicked, &model_,
                        &PanelModel::publicAddressRequested);
            sections_.push_back(section);
            widget = section;
        }
        column_->addWidget(widget);
        if (widget->focusPolicy() != Qt::NoFocus) {
            setTabOrder(previous, widget);
            previous = widget;
        } else if (auto* section = qobject_cast<DetailSection*>(widget);
                   section && section->button()) {
            setTabOrder(previous, section->button());
            previous = section->button();
        }
    }
    column_->addStretch(1);
    updateGeometry();
}

bool DetailView::sameShape(const panel::DetailContent& next) const {
    if (next.blocks.size() != content_.blocks.size()) return false;
    for (std::size_t i = 0; i < next.blocks.size(); ++i) {
        const auto& a = next.blocks[i];
        const auto& b = content_.blocks[i];
        if (a.kind != b.kind || a.title != b.title || a.chart != b.chart) return false;
    }
    return true;
}

int DetailView::refresh() {
    panel::DetailContent next = panel::describeDetail(detail_, model_.detailInputs());
    int repainted = 0;
    if (!sameShape(next)) {
        const int scrollTo = scroll_->verticalScrollBar()->value();
        content_ = std::move(next);
        build();
        scroll_->verticalScrollBar()->setValue(scrollTo);
        emit shapeChanged();
        return 1;
    }
    if (!(next == content_)) {
        repainted += headline_->setContent(next) ? 1 : 0;
        std::size_t section = 0, chart = 0;
        for (const auto& block : next.blocks) {
            if (isChart(block)) {
                if (block.kind == Kind::pressure) charts_[chart]->setNote(block.note, block.level);
                ++chart;
            } else {
                repainted += sections_[section++]->setBlock(block) ? 1 : 0;
            }
        }
        content_ = std::move(next);
    }
    for (auto* chart : charts_) repainted += chart->refresh() ? 1 : 0;
    return repainted;
}

void DetailView::setRange(panel::ChartRange range) {
    range_ = range;
    model_.setChartRange(range);
    if (rangeSwitch_) rangeSwitch_->setRange(range);
    for (auto* chart : charts_) chart->setRange(range);
}

QSize DetailView::sizeHint() const {
    const int body = body_ ? body_->sizeHint().height() : 0;
    return QSize(Metrics::panelWidth, Metrics::topBarHeight + body);
}

void DetailView::keyPressEvent(QKeyEvent* event) {
    // With the screen itself focused (as it is when it opens), the keys scroll it.
    QScrollBar* bar = scroll_->verticalScrollBar();
    const bool plain = !(event->modifiers() & ~Qt::KeypadModifier);
    if (plain) {
        switch (event->key()) {
            case Qt::Key_Down:
                bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
                return;
            case Qt::Key_Up:
                bar->triggerAction(QAbstractSlider::SliderSingleStepSub);
                return;
            case Qt::Key_PageDown:
            case Qt::Key_Space:
                bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
                return;
            case Qt::Key_PageUp:
                bar->triggerAction(QAbstractSlider::SliderPageStepSub);
                return;
            case Qt::Key_Home:
                bar->triggerAction(QAbstractSlider::SliderToMinimum);
                return;
            case Qt::Key_End:
                bar->triggerAction(QAbstractSlider::SliderToMaximum);
                return;
            case Qt::Key_Backspace:
                emit backRequested();
                return;
            default:
                break;
        }
    }
    QWidget::keyPressEvent(event);
}

void DetailView::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), theme_.theme().palette().window);
}

DetailView* openDetail(PanelWindow& window, PanelModel& model, const ThemeStore& theme,
                       panel::MetricDetail detail) {
    window.showTab(panel::PanelTab::overview);
    auto* view = new DetailView(detail, model, theme);
    QPointer<PanelWindow> panel(&window);
    QObject::connect(view, &DetailView::backRequested, &window, [panel] {
        if (panel) panel->popDetail();
    });
    QObject::connect(view, &DetailView::shapeChanged, &window, [panel] {
        if (panel) panel->fitToContent();
    });
    const std::string card(panel::MetricDetailNames[std::size_t(detail)]);
    const CardView* opener = window.overview().card(card);
    const bool byKeyboard = opener && opener->showsFocusRing();
    QObject::connect(view, &QObject::destroyed, &window, [panel, card, byKeyboard] {
        // Back where the user left: the card that opened the detail takes the focus again,
        // with its ring only when the keyboard opened it.
        if (!panel || panel->hasDetail()) return;
        if (CardView* c = panel->overview().card(card))
            c->setFocus(byKeyboard ? Qt::OtherFocusReason : Qt::MouseFocusReason);
    });
    window.pushDetail(view);
    return view;
}

}  // namespace trotlet::ui
