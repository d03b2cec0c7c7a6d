// A stand-in for the person at the assertion dialog: records what each dialog showed and
// answers from a queue. An empty queue answers 0, "no dialog could be shown".
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "core_assert.h"
#include "core_report_files.h"
#include "core_settings.h"

struct AssertionScript {
    std::deque<int> answers;
    bool save_report = false;  // the box's state when the person answers
    std::function<void()> while_shown;

    std::vector<std::string> texts;
    std::vector<bool> save_at_start;
    std::vector<void*> owners;

    static AssertionScript& current() {
        static AssertionScript script;
        return script;
    }

    static int Show(const char* text, void* owner_window, bool* save_report) {
        AssertionScript& script = current();
        script.texts.emplace_back(text);
        script.save_at_start.push_back(*save_report);
        script.owners.push_back(owner_window);
        if (script.while_shown) script.while_shown();
        *save_report = script.save_report;
        if (script.answers.empty()) return 0;
        const int answer = script.answers.front();
        script.answers.pop_front();
        return answer;
    }

    // Everything the assertion path keeps between failures, back to how a program starts,
    // with this script as the dialog.
    static void Install() {
        current() = AssertionScript();
        Core::assertion_hooks() = {};
        Core::bug_report_options() = {};
        Core::debug_options() = {};
        Core::Detail::report_settings() = Core::Detail::ReportSettings();
        Core::set_assertion_dialog(&Show);
        Core::set_assertion_owner_window(nullptr);
        Core::set_report_without_dialog(false);
        Core::set_exit_on_second_assertion(false);
        Core::set_assertions_disabled(false);
    }
    static void Uninstall() {
        Install();
        Core::set_assertion_dialog(nullptr);
    }
};
