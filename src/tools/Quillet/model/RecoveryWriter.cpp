#include "RecoveryWriter.h"

#include <filesystem>

RecoveryWriter::RecoveryWriter() : thread_([this](std::stop_token stop) { Run(stop); }) {}

RecoveryWriter::~RecoveryWriter() {
    Wait();
    thread_.request_stop();
    wake_.notify_all();
}

void RecoveryWriter::Write(const std::string& file, RecoveryCopy copy) {
    Post({file, std::move(copy)});
}

void RecoveryWriter::Remove(const std::string& file) {
    Post({file, std::nullopt});
}

void RecoveryWriter::Post(Request request) {
    {
        const std::lock_guard lock(mutex_);
        waiting_ = std::move(request);
    }
    wake_.notify_all();
}

void RecoveryWriter::Wait() {
    std::unique_lock lock(mutex_);
    wake_.wait(lock, [this] { return !waiting_ && !busy_; });
}

std::string RecoveryWriter::TakeFailure() {
    const std::lock_guard lock(mutex_);
    return std::exchange(failure_, {});
}

void RecoveryWriter::Run(std::stop_token stop) {
    std::unique_lock lock(mutex_);
    while (wake_.wait(lock, stop, [this] { return waiting_.has_value(); })) {
        const Request request = std::move(*waiting_);
        waiting_.reset();
        busy_ = true;
        lock.unlock();
        Carry(request);
        lock.lock();
        busy_ = false;
        wake_.notify_all();
    }
}

void RecoveryWriter::Carry(const Request& request) {
    std::string reason;
    if (request.copy) {
        if (WriteRecoveryCopy(request.file, *request.copy, reason)) return;
    } else {
        std::error_code error;
        std::filesystem::remove(request.file, error);
        if (!error) return;
        reason = error.message();
    }
    const std::lock_guard lock(mutex_);
    failure_ = request.file + ": " + reason;
}
