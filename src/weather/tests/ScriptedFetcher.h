#pragma once

// A fetcher the test answers by hand, request by request, so the store's timeline runs on
// a fake clock without a network.

#include <memory>
#include <vector>

#include "weather/WeatherFetching.h"

namespace trotlet::weather::testing {

class ScriptedFetcher : public WeatherFetching {
public:
    struct Call {
        WeatherLocation place;
        ForecastDone done;
        bool finished = false;
        bool cancelled = false;
    };
    struct SearchCall {
        std::string query;
        std::string language;
        SearchDone done;
        bool finished = false;
        bool cancelled = false;
    };

    std::vector<std::shared_ptr<Call>> calls;
    std::vector<std::shared_ptr<SearchCall>> searches;
    // When set, a cancelled call does not answer, as a fetcher that lost the race would.
    bool silentCancel = false;

    std::shared_ptr<FetchHandle> forecast(const WeatherLocation& place, ForecastDone done) override {
        auto call = std::make_shared<Call>();
        call->place = place;
        call->done = std::move(done);
        calls.push_back(call);
        return std::make_shared<Handle<Call>>(call, silentCancel);
    }

    std::shared_ptr<FetchHandle> search(const std::string& query, const std::string& language,
                                        SearchDone done) override {
        auto call = std::make_shared<SearchCall>();
        call->query = query;
        call->language = language;
        call->done = std::move(done);
        searches.push_back(call);
        return std::make_shared<Handle<SearchCall>>(call, silentCancel);
    }

    // Answers call `i` (even a cancelled one: late answers must be harmless).
    void answer(size_t i, WeatherResult<WeatherReport> result) {
        auto& c = *calls.at(i);
        c.finished = true;
        if (c.done) c.done(std::move(result));
    }
    void answerSearch(size_t i, WeatherResult<std::vector<WeatherLocation>> result) {
        auto& c = *searches.at(i);
        c.finished = true;
        if (c.done) c.done(std::move(result));
    }
    size_t open() const {
        size_t n = 0;
        for (const auto& c : calls) n += !c->finished;
        return n;
    }

private:
    template <typename C>
    class Handle : public FetchHandle {
    public:
        Handle(std::shared_ptr<C> call, bool silent) : call_(std::move(call)), silent_(silent) {}
        void cancel() override {
            if (call_->finished) return;
            call_->cancelled = true;
            if (silent_) return;
            call_->finished = true;
            if (call_->done) call_->done(WeatherError::cancelled());
        }

    private:
        std::shared_ptr<C> call_;
        bool silent_;
    };
};

}  // namespace trotlet::weather::testing
