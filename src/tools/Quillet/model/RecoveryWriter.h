// Writes recovery copies on a thread of its own, so that the person never waits for the
// disk. Requests are taken newest first: a copy still waiting when a newer request comes is
// dropped, as the newer one holds all it had.
//
// Failure style: a write that fails leaves the older copy; its reason waits in
// TakeFailure() for the interface's thread to tell.
#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "RecoveryFile.h"

class RecoveryWriter {
public:
    RecoveryWriter();
    // Finishes the request under way and the one waiting, then stops.
    ~RecoveryWriter();
    RecoveryWriter(const RecoveryWriter&) = delete;
    RecoveryWriter& operator=(const RecoveryWriter&) = delete;

    void Write(const std::string& file, RecoveryCopy copy);
    // Removes the copy in `file`: there is nothing left to recover.
    void Remove(const std::string& file);
    // Returns once every request made so far is done.
    void Wait();
    // Why the last request that failed did, once; empty when none failed since.
    std::string TakeFailure();

private:
    struct Request {
        std::string file;
        std::optional<RecoveryCopy> copy;  // nothing: remove the file
    };

    void Post(Request request);
    void Run(std::stop_token stop);
    void Carry(const Request& request);

    std::mutex mutex_;
    std::condition_variable_any wake_;
    std::optional<Request> waiting_;
    bool busy_ = false;
    std::string failure_;
    std::jthread thread_;  // last: it starts once everything it uses stands
};
