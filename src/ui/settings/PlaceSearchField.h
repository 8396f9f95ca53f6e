#pragma once

#include <QWidget>

#include <optional>

#include "weather/WeatherLocation.h"

class QLineEdit;

namespace trotlet::weather {
class WeatherSearch;
}

namespace trotlet::ui {

class SuggestionList;
class ThemeStore;
class ThemedLabel;

// The city field: suggestions as the user types (debounced by the search), one row highlighted
// and moved with Up and Down, Return or a click choosing it. A list that answers older text is
// dimmed until the new answer lands; Return over it searches the text as it is now and takes the
// top match. Failures and empty answers show under the field and never touch the place already
// chosen. Escape empties the field (and, when it is empty, goes to the screen).
class PlaceSearchField : public QWidget {
    Q_OBJECT
public:
    PlaceSearchField(weather::WeatherSearch* search, const ThemeStore& theme,
                     QWidget* parent = nullptr);

    QLineEdit& edit() const { return *edit_; }
    SuggestionList& suggestions() const { return *list_; }
    QString statusText() const;
    int highlighted() const;
    void setPlaceholder(const QString& text);

signals:
    void placeChosen(const trotlet::weather::WeatherLocation& place);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void searchChanged();
    void choose(int index);

    weather::WeatherSearch* search_;
    const ThemeStore& theme_;
    QWidget* frame_ = nullptr;
    QLineEdit* edit_ = nullptr;
    ThemedLabel* status_ = nullptr;
    SuggestionList* list_ = nullptr;
    bool resolving_ = false;
};

// The suggestions under the city field, painted: the place's name and where it is.
class SuggestionList : public QWidget {
    Q_OBJECT
public:
    explicit SuggestionList(const ThemeStore& theme, QWidget* parent = nullptr);

    void setPlaces(const std::vector<weather::WeatherLocation>& places, bool current);
    int count() const { return int(places_.size()); }
    int highlighted() const { return highlighted_; }
    void setHighlighted(int row);
    bool isCurrent() const { return current_; }

    QSize sizeHint() const override;

signals:
    void activated(int row);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    int rowAt(qreal y) const;

    const ThemeStore& theme_;
    std::vector<weather::WeatherLocation> places_;
    bool current_ = true;
    int highlighted_ = 0;
};

}  // namespace trotlet::ui
