#include "report.h"

#include "framework/Application.h"

void ReportUnless(bool condition, const std::string& text) {
    if (condition) return;
    if (framework::Application* application = framework::Application::Instance())
        application->UI().MessageBox(text, "Error", framework::MessageIcon::Stop,
                                     framework::MessageButtons::Ok);
}
