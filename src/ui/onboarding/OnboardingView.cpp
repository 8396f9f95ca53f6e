#include "ui/onboarding/OnboardingView.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <cmath>

#include "layout/LayoutStore.h"
#include "mascot/MascotCharacter.h"
#include "settings/AppSettings.h"
#include "ui/controls/PushButton.h"
#include "ui/controls/ThemedLabel.h"
#include "ui/panel/PanelModel.h"
#include "ui/settings/SettingsController.h"
#include "ui/settings/SettingsPageView.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

constexpr int gaitRowHeight = 40;
constexpr int gaitMascot = 30;
constexpr int frameMs = 42;  // the showcase's clock: 24 ticks a second
constexpr qreal dotSize = 7;

QString qs(const std::string& s) { return QString::fromStdString(s); }

}  // namespace

// --- the gaits ------------------------------------------------------------------------------

GaitShowcaseView::GaitShowcaseView(PanelModel& model, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme) {
    setAccessibleName(QStringLiteral("Gaits"));
    QStringList spoken;
    for (const auto& g : panel::gaitShowcase(mascot::characterFor(model_.mascotId())))
        spoken << qs(g.name + ": " + g.meaning);
    setAccessibleDescription(spoken.join(QStringLiteral(". ")));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(6 * gaitRowHeight + 2 * Metrics::spacing);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] {
        seconds_ += frameMs / 1000.0;
        update();
    });
    connect(&model_, &PanelModel::reduceMotionChanged, this, &GaitShowcaseView::reschedule);
    connect(&theme_, &ThemeStore::changed, this, qOverload<>(&QWidget::update));
}

QSize GaitShowcaseView::sizeHint() const {
    return QSize(Metrics::gridWidth, 6 * gaitRowHeight + 2 * Metrics::spacing);
}

void GaitShowcaseView::setAnimating(bool animating) {
    wantAnimation_ = animating;
    reschedule();
}

void GaitShowcaseView::reschedule() {
    if (wantAnimation_ && isVisible() && !model_.reduceMotion())
        timer_.start(frameMs);
    else
        timer_.stop();
}

void GaitShowcaseView::showEvent(QShowEvent*) { reschedule(); }
void GaitShowcaseView::hideEvent(QHideEvent*) { reschedule(); }

void GaitShowcaseView::paintEvent(QPaintEvent*) {
    const Theme& t = theme_.theme();
    const Palette& pal = t.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(pal.border, 1));
    p.setBrush(pal.surface);
    p.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Metrics::cardRadius,
                      Metrics::cardRadius);
    const auto& character = mascot::characterFor(model_.mascotId());
    const auto rows = panel::gaitShowcase(character);
    const QFontMetricsF nameMetrics(t.type().label);
    qreal nameWidth = 0;
    for (const auto& g : rows)
        nameWidth = std::max(nameWidth, nameMetrics.horizontalAdvance(qs(g.name)));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto& g = rows[i];
        const QRectF row(Metrics::rowPadding, Metrics::spacing + qreal(i) * gaitRowHeight,
                         width() - 2 * Metrics::rowPadding, gaitRowHeight);
        // Each row keeps its own pace: the frame follows the gait's frame rate on one clock.
        const int frame = int(std::floor(seconds_ * g.framesPerSecond));
        const QImage image =
            renderer_.frame(character, g.state, frame, gaitMascot, devicePixelRatioF());
        p.drawImage(
            QRectF(row.left(), row.center().y() - gaitMascot / 2.0 - 2, gaitMascot, gaitMascot),
            image);
        // A pace bar: how fast this gait goes, out of the fastest.
        const qreal barLeft = row.left() + gaitMascot + Metrics::spacingLarge;
        p.setFont(t.type().label);
        p.setPen(pal.text);
        p.drawText(QRectF(barLeft, row.top(), nameWidth + 2, row.height()),
                   Qt::AlignVCenter | Qt::AlignLeft, qs(g.name));
        const qreal meaningLeft = barLeft + nameWidth + Metrics::spacingLarge;
        p.setFont(t.type().caption);
        p.setPen(pal.textSecondary);
        p.drawText(QRectF(meaningLeft, row.top(), row.right() - meaningLeft, row.height()),
                   Qt::AlignVCenter | Qt::AlignLeft,
                   QFontMetricsF(t.type().caption)
                       .elidedText(qs(g.meaning), Qt::ElideRight, row.right() - meaningLeft));
        if (i + 1 < rows.size()) {
            p.setPen(QPen(pal.separator, 1));
            p.drawLine(QPointF(barLeft, row.bottom() + 0.5),
                       QPointF(width() - Metrics::rowPadding, row.bottom() + 0.5));
        }
    }
}

// --- the gift -------------------------------------------------------------------------------

GiftBox::GiftBox(SettingsController& controller, const ThemeStore& theme, QWidget* parent)
    : Control(theme, parent), controller_(controller) {
    setAccessibleName(QStringLiteral("Welcome gift"));
    setCursor(Qt::PointingHandCursor);
    setFixedSize(sizeHint());
    connect(&controller_, &SettingsController::giftChanged, this, [this] {
        setCursor(controller_.welcomeGiftGranted() ? Qt::ArrowCursor : Qt::PointingHandCursor);
        update();
        announceChange();
    });
}

QSize GiftBox::sizeHint() const { return QSize(Metrics::gridWidth, 196); }

QString GiftBox::accessibleValue() const {
    return qs(
        panel::giftCard(controller_.welcomeGiftGranted(), controller_.welcomeGiftFish()).title);
}

void GiftBox::activate() {
    if (!controller_.welcomeGiftGranted()) emit controller_.welcomeGiftRequested();
}

void GiftBox::paintEvent(QPaintEvent*) {
    const Theme& t = theme();
    const Palette& pal = t.palette();
    const auto card =
        panel::giftCard(controller_.welcomeGiftGranted(), controller_.welcomeGiftFish());
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF surface = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    p.setPen(QPen(pal.border, 1));
    p.setBrush(hovered() && !card.opened ? pal.surfaceHover : pal.surface);
    p.drawRoundedRect(surface, Metrics::cardRadius, Metrics::cardRadius);

    const QPointF centre(width() / 2.0, 78);
    const QColor ribbon = pal.named("pink");
    const QColor paper = pal.named("cyan");
    if (!card.opened) {
        // A wrapped box: body, lid, ribbon and bow.
        const QRectF body(centre.x() - 44, centre.y() - 16, 88, 60);
        const QRectF lid(centre.x() - 50, centre.y() - 34, 100, 22);
        p.setPen(Qt::NoPen);
        p.setBrush(paper);
        p.drawRoundedRect(body, 6, 6);
        p.setBrush(paper.lighter(112));
        p.drawRoundedRect(lid, 6, 6);
        p.setBrush(ribbon);
        p.drawRect(QRectF(centre.x() - 7, lid.top(), 14, body.bottom() - lid.top()));
        QPainterPath bow;
        bow.moveTo(centre.x(), lid.top());
        bow.cubicTo(centre.x() - 30, lid.top() - 26, centre.x() - 34, lid.top() + 2, centre.x(),
                    lid.top());
        bow.cubicTo(centre.x() + 34, lid.top() + 2, centre.x() + 30, lid.top() - 26, centre.x(),
                    lid.top());
        p.drawPath(bow);
        p.drawEllipse(QPointF(centre.x(), lid.top()), 5, 5);
    } else {
        // The gift opened: a big fish on a soft disc, with a sparkle.
        QColor disc = paper;
        disc.setAlphaF(0.18);
        p.setPen(Qt::NoPen);
        p.setBrush(disc);
        p.drawEllipse(centre, 48, 48);
        Icons::paint(p, QRectF(centre.x() - 30, centre.y() - 30, 60, 60), "fish.fill", paper);
        Icons::paint(p, QRectF(centre.x() + 26, centre.y() - 44, 24, 24), "sparkles",
                     pal.named("yellow"));
    }
    p.setFont(t.type().title);
    p.setPen(pal.text);
    p.drawText(QRectF(0, 132, width(), 24), Qt::AlignCenter, qs(card.title));
    p.setFont(t.type().caption);
    p.setPen(pal.textSecondary);
    p.drawText(QRectF(0, 156, width(), 20), Qt::AlignCenter, qs(card.detail));
    paintFocusRing(p, surface.adjusted(3, 3, -3, -3), Metrics::cardRadius - 3);
}

void GiftBox::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        activate();
}

void GiftBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
        event->key() == Qt::Key_Enter) {
        activate();
        return;
    }
    Control::keyPressEvent(event);
}

// --- the tour -------------------------------------------------------------------------------

OnboardingView::OnboardingView(PanelModel& model, const ThemeStore& theme,
                               SettingsController& controller, QWidget* parent)
    : QWidget(parent), context_{model, theme, controller} {
    setObjectName(QStringLiteral("onboarding"));
    setAccessibleName(QStringLiteral("Welcome to Trotlet"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Metrics::margin, 0, Metrics::margin, 0);
    column->setSpacing(Metrics::spacing);

    auto* top = new QHBoxLayout;
    top->addStretch(1);
    skip_ = new PushButton(QStringLiteral("Skip"), PushButton::Style::quiet, theme, this);
    skip_->setAccessibleName(QStringLiteral("Skip the tour"));
    connect(skip_, &PushButton::clicked, this, &OnboardingView::finish);
    QSizePolicy keepRoom = skip_->sizePolicy();
    keepRoom.setRetainSizeWhenHidden(true);
    skip_->setSizePolicy(keepRoom);
    top->addWidget(skip_);
    column->addLayout(top);

    title_ = new ThemedLabel({}, ThemedLabel::Role::display, theme, this);
    column->addWidget(title_);
    body_ = new ThemedLabel({}, ThemedLabel::Role::lead, theme, this);
    column->addWidget(body_);
    column->addSpacing(Metrics::spacingSmall);

    content_ = new QStackedWidget(this);
    gaits_ = new GaitShowcaseView(model, theme, content_);
    content_->addWidget(gaits_);
    giftPage_ = new QWidget(content_);
    auto* giftColumn = new QVBoxLayout(giftPage_);
    giftColumn->setContentsMargins(0, 0, 0, 0);
    gift_ = new GiftBox(controller, theme, giftPage_);
    giftColumn->addWidget(gift_);
    giftColumn->addStretch(1);
    content_->addWidget(giftPage_);
    column->addWidget(content_, 1);

    auto* bottom = new QHBoxLayout;
    bottom->setContentsMargins(0, Metrics::spacing, 0, 0);
    back_ = new PushButton(QStringLiteral("Back"), PushButton::Style::plain, theme, this);
    back_->setIcon("chevron.left");
    connect(back_, &PushButton::clicked, this, [this] {
        if (const auto previous = panel::previousStep(step_))
            showStep(*previous, back_->showsFocusRing());
    });
    primary_ = new PushButton({}, PushButton::Style::primary, theme, this);
    connect(primary_, &PushButton::clicked, this, &OnboardingView::primary);
    bottom->addWidget(back_);
    bottom->addStretch(1);
    bottom->addWidget(primary_);
    column->addLayout(bottom);

    connect(&controller, &SettingsController::giftChanged, this, &OnboardingView::applyTexts);
    connect(&controller, &SettingsController::factsChanged, this, &OnboardingView::scheduleRefresh);
    auto& s = model.settings();
    for (settings::SettingsGroup* group : std::initializer_list<settings::SettingsGroup*>{
             &s.general(), &s.menuBar(), &s.notifications(), &s.weather(), &s.monitoring()})
        observers_.emplace_back(group,
                                group->observe([this](const std::string&) { scheduleRefresh(); }));
    showStep(panel::OnboardingStep::meet);
}

OnboardingView::~OnboardingView() {
    for (const auto& [group, id] : observers_) group->unobserve(id);
}

QSize OnboardingView::sizeHint() const {
    return QSize(Metrics::panelWidth, Metrics::maxPanelHeight);
}

void OnboardingView::setAnimating(bool animating) { gaits_->setAnimating(animating); }

void OnboardingView::scheduleRefresh() {
    if (refreshPending_ || !blocks_) return;
    refreshPending_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            refreshPending_ = false;
            if (blocks_) blocks_->refresh();
        },
        Qt::QueuedConnection);
}

void OnboardingView::showStep(panel::OnboardingStep step, bool byKeyboard) {
    step_ = step;
    if (blocks_) {
        content_->removeWidget(blocks_);
        blocks_->deleteLater();
        blocks_ = nullptr;
    }
    using S = panel::OnboardingStep;
    if (step == S::meet) {
        content_->setCurrentWidget(gaits_);
    } else if (step == S::gift) {
        content_->setCurrentWidget(giftPage_);
    } else {
        blocks_ = new SettingsBlocksView(
            [this] {
                return panel::onboardingBlocks(step_, context_.model.settings(),
                                               context_.controller.facts(context_.model));
            },
            context_, content_);
        content_->addWidget(blocks_);
        content_->setCurrentWidget(blocks_);
    }
    applyTexts();
    update();
    // The main button keeps the focus, so Enter walks through the tour; its ring shows only
    // when the keyboard is in use.
    primary_->setFocus(byKeyboard ? Qt::TabFocusReason : Qt::MouseFocusReason);
    emit stepChanged(step);
}

void OnboardingView::applyTexts() {
    const bool opened = context_.controller.welcomeGiftGranted();
    const auto page = panel::onboardingPage(step_, context_.model.mascotName(), opened);
    title_->setText(qs(page.title));
    body_->setText(qs(page.body));
    primary_->setText(qs(page.primary));
    back_->setVisible(page.canGoBack);
    skip_->setVisible(page.canSkip);
}

void OnboardingView::primary() {
    if (step_ == panel::OnboardingStep::gift) {
        if (!context_.controller.welcomeGiftGranted()) {
            gift_->activate();
            return;
        }
        finish();
        return;
    }
    if (const auto next = panel::nextStep(step_)) showStep(*next, primary_->showsFocusRing());
}

void OnboardingView::finish() {
    panel::finishOnboarding(context_.model.settings().general());
    emit context_.controller.onboardingClosed();
}

void OnboardingView::keyPressEvent(QKeyEvent* event) {
    const auto mods = event->modifiers() & ~Qt::KeypadModifier;
    if (mods == Qt::AltModifier && event->key() == Qt::Key_Left) {
        if (const auto previous = panel::previousStep(step_)) showStep(*previous, true);
        return;
    }
    if (mods == Qt::AltModifier && event->key() == Qt::Key_Right) {
        primary();
        return;
    }
    QWidget::keyPressEvent(event);
}

void OnboardingView::paintEvent(QPaintEvent*) {
    // The steps as dots, the current one long.
    const Palette& pal = context_.theme.theme().palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    const qreal y = skip_->geometry().center().y() - dotSize / 2;
    qreal x = Metrics::margin + 2;
    for (int i = 0; i < panel::onboardingStepCount; ++i) {
        const bool current = i == panel::stepIndex(step_);
        const qreal w = current ? dotSize * 3 : dotSize;
        p.setBrush(i <= panel::stepIndex(step_) ? pal.accent : pal.track);
        p.drawRoundedRect(QRectF(x, y, w, dotSize), dotSize / 2, dotSize / 2);
        x += w + 5;
    }
}

}  // namespace trotlet::ui
