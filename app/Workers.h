#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace convfile::app {

/// Does many things in some threads, and takes what comes of them in their order: one at a time, in
/// whichever thread is done with the next, so that none has to wake for it. No thread is further
/// ahead of what was taken than twice as many as there are threads, so that no more results wait
/// than that.
template <class Result>
class Workers {
public:
    /// `work` makes one result, several at the same time; `take` gets them in order.
    Workers(std::size_t count, std::size_t threads, std::function<Result(std::size_t)> work,
            std::function<void(std::size_t, Result&)> take)
        : work_(std::move(work)),
          take_(std::move(take)),
          count_(count),
          wanted_(threads),
          done_(2 * threads) {}
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

    /// True once all before this one are taken: whoever makes it may do then what follows on them.
    bool IsNext(std::size_t i) const { return taken_.load(std::memory_order_acquire) == i; }

    /// Does all. `meanwhile` gets the number of the next to be taken now and then, in this thread,
    /// and never while one is taken. Throws what `work` or `take` threw.
    void Run(const std::function<void(std::size_t)>& meanwhile) {
        Start();
        if (threads_.empty())
            Work();
        std::unique_lock lock(mutex_);
        while (
            !ended_.wait_for(lock, kNowAndThen, [this] { return taken_ == count_ || failure_; })) {
            if (isTaking_)
                continue;
            isTaking_ = true;
            lock.unlock();
            meanwhile(taken_);
            lock.lock();
            isTaking_ = false;
            TakeReady(lock);
        }
        if (failure_)
            std::rethrow_exception(failure_);
    }

private:
    static constexpr std::chrono::milliseconds kNowAndThen{200};

    void Start() {
        try {
            while (threads_.size() < wanted_)
                threads_.emplace_back([this] { Work(); });
        } catch (const std::system_error&) { // as many as the system has
        }
    }

    void Work() {
        std::unique_lock lock(mutex_);
        try {
            while (true) {
                room_.wait(lock,
                           [this] { return next_ >= count_ || next_ < taken_ + done_.size(); });
                if (next_ >= count_)
                    return;
                const std::size_t mine = next_++;
                lock.unlock();
                Result result = work_(mine);
                lock.lock();
                done_[mine % done_.size()] = std::move(result);
                TakeReady(lock);
            }
        } catch (...) {
            if (!lock.owns_lock())
                lock.lock();
            failure_ = std::current_exception();
            next_ = count_;
            room_.notify_all();
            ended_.notify_one();
        }
    }

    /// Takes what is there of what is next, unless somebody does.
    void TakeReady(std::unique_lock<std::mutex>& lock) {
        if (isTaking_)
            return;
        isTaking_ = true;
        while (taken_ < count_ && done_[taken_ % done_.size()]) {
            std::optional<Result> result =
                std::exchange(done_[taken_ % done_.size()], std::nullopt);
            lock.unlock();
            take_(taken_, *result);
            result.reset(); // not under the lock: it may be large
            lock.lock();
            taken_.fetch_add(1, std::memory_order_release);
            room_.notify_one();
        }
        isTaking_ = false;
        if (taken_ == count_)
            ended_.notify_one();
    }

    std::function<Result(std::size_t)> work_;
    std::function<void(std::size_t, Result&)> take_;
    std::size_t count_;
    std::size_t wanted_;                      ///< threads
    std::size_t next_ = 0;                    ///< to be begun
    std::atomic<std::size_t> taken_ = 0;      ///< so many; changed under the lock
    bool isTaking_ = false;                   ///< somebody does, or speaks meanwhile
    std::exception_ptr failure_;              ///< what was thrown
    std::vector<std::optional<Result>> done_; ///< a ring
    std::mutex mutex_;
    std::condition_variable room_;  ///< for another result, or no more to do
    std::condition_variable ended_; ///< all are taken, or something was thrown
    std::vector<std::thread> threads_;
};

} // namespace convfile::app
