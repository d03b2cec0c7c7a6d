#include "report.h"

#include "framework/Application.h"

void ReportUnless(bool condition, const std::string& text) {
    if (!condition) ShowStop(text, "Error");
}

void ShowStop(const std::string& text, const std::string& caption) {
    if (framework::Application* application = framework::Application::Instance())
        application->UI().MessageBox(text, caption, framework::MessageIcon::Stop,
                                     framework::MessageButtons::Ok);
}
