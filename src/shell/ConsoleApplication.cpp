#include "shell/ConsoleApplication.h"

#include <QCoreApplication>

#include <utility>

#include "link/EADSessionController.h"
#include "link/EADSessionTransferViewController.h"
#include "platform/Listener.h"
#include "shell/Screens.h"

namespace kestrix::shell {
namespace {

constexpr int kFailedToLook = 1;
constexpr int kWrongUri = 2;

}  // namespace

ConsoleApplication::ConsoleApplication(ConsoleOptions options)
    : options_(std::move(options)),
      notice_(scheduler()),
      screens_(options_.slideDuration),
      services_(makeServices()) {
    const ScreenRow console{ui::ScreenId::SessionTransfer,
                            QT_TRANSLATE_NOOP("Screens", "Link console"),
                            make<link::EADSessionTransferViewController>,
                            "Link/EADSessionTransferView.qml",
                            {}};
    registerScreen(console, screens_, services_);
    search_ = std::make_unique<ConsoleSearchViewController>(ui::ScreenId::SessionSearch, services_);
    search_->setName(QCoreApplication::translate("Screens", "Link console"));
    search_->loadView();
    screens_.setRoot(search_.get());
    connectSubscription_ = platform::NotificationCenter::defaultCenter().addObserver(
        platform::kAccessoryDidConnect, [this](const platform::Notification& event) {
            const auto* const accessory =
                platform::userInfoOf<platform::AccessoryPtr>(event, platform::kAccessoryKey);
            if (accessory != nullptr && *accessory) accessoryDidConnect(*accessory);
        });
    accessories_.registerForLocalNotifications();
}

ConsoleApplication::~ConsoleApplication() {
    screens_.setRoot(nullptr);
    link::EADSessionController& controller = link::EADSessionController::sharedController();
    controller.closeSession();
    controller.setupControllerForAccessory(nullptr, {});
}

bool ConsoleApplication::start() {
    std::vector<std::unique_ptr<platform::AccessorySource>> sources;
    for (const std::string& uri : options_.uris) {
        platform::SourceOrProblem made = platform::makeAccessorySource(uri, scheduler(), options_.simulator,
                                                                       platform::makeAnyByteListener);
        if (!made.source) {
            problem_ = made.problem;
            exitStatus_ = made.wrongUri ? kWrongUri : kFailedToLook;
            return false;
        }
        sources.push_back(std::move(made.source));
    }
    for (auto& source : sources) accessories_.addSource(std::move(source));
    search_->viewWillAppear();
    search_->viewDidAppear();
    return true;
}

// One that announces no protocol is none that a session could be opened with.
void ConsoleApplication::accessoryDidConnect(const platform::AccessoryPtr& accessory) {
    if (accessory->protocolStrings.empty()) return;
    link::EADSessionController::sharedController().setupControllerForAccessory(
        accessory, accessory->protocolStrings.front());
    screens_.present(ui::ScreenId::SessionTransfer, true);
}

platform::Scheduler& ConsoleApplication::scheduler() {
    return options_.scheduler != nullptr ? *options_.scheduler : eventLoop_;
}

ui::Services ConsoleApplication::makeServices() {
    return {
        .defaults = defaults_,
        .documents = platform::DocumentsFolder(QString()),
        .scheduler = scheduler(),
        .navigation = screens_,
        .notice = notice_,
        .alerts = alerts_,
        .textMeasure = textMeasure_,
        .timeText = timeText_,
        .stampText = stampText_,
        .now = std::chrono::system_clock::now,
        .accessories = accessories_,
        .reachability = network_,
        .loadMail = [] { return platform::MailParts{}; },
        .openAddress = [](const QString&) { return false; },
        .wait = [](std::chrono::milliseconds) {},
        .slideDuration = options_.slideDuration,
    };
}

}  // namespace kestrix::shell
