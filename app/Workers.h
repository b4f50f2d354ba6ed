#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace convfile::app {

/// Does many things in some threads, and gives what comes of them in their order. A thread is never
/// further ahead of what was given than there are threads, so that no more results wait than that.
template <class Result>
class Workers {
public:
    /// `work` makes one result, in any thread; it must not throw.
    Workers(std::size_t count, std::size_t threads, std::function<Result(std::size_t)> work)
        : work_(std::move(work)), count_(count), ahead_(2 * threads), done_(ahead_) {
        try {
            while (threads_.size() < threads)
                threads_.emplace_back([this] { Work(); });
        } catch (const std::system_error&) { // as many as the system has
            if (threads_.empty())
                throw;
        }
    }
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;
    ~Workers() {
        {
            const std::lock_guard lock(mutex_);
            next_ = count_;
        }
        room_.notify_all();
        for (std::thread& thread : threads_)
            thread.join();
    }

    /// The next result in order; `whileWaiting` is called now and then until it is there.
    Result Take(const std::function<void()>& whileWaiting) {
        std::unique_lock lock(mutex_);
        while (!ready_.wait_for(lock, kNowAndThen,
                                [this] { return done_[given_ % ahead_].has_value(); })) {
            lock.unlock();
            whileWaiting();
            lock.lock();
        }
        Result result = std::move(*std::exchange(done_[given_ % ahead_], std::nullopt));
        ++given_;
        lock.unlock();
        room_.notify_one();
        return result;
    }

private:
    static constexpr std::chrono::milliseconds kNowAndThen{200};

    void Work() {
        std::unique_lock lock(mutex_);
        while (true) {
            room_.wait(lock, [this] { return next_ >= count_ || next_ < given_ + ahead_; });
            if (next_ >= count_)
                return;
            const std::size_t mine = next_++;
            lock.unlock();
            Result result = work_(mine);
            lock.lock();
            done_[mine % ahead_] = std::move(result);
            if (mine == given_) // nobody waits for another
                ready_.notify_one();
        }
    }

    std::function<Result(std::size_t)> work_;
    std::size_t count_;
    std::size_t ahead_;
    std::size_t next_ = 0;                    ///< to be begun
    std::size_t given_ = 0;                   ///< so many
    std::vector<std::optional<Result>> done_; ///< a ring
    std::mutex mutex_;
    std::condition_variable room_;  ///< for another result, or no more to do
    std::condition_variable ready_; ///< the next result in order
    std::vector<std::thread> threads_;
};

} // namespace convfile::app
