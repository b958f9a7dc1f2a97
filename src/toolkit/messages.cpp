// The message queue and the wait for the user.
#include <deque>
#include <set>

#include "toolkit/common.h"
#include "toolkit/journal.h"

namespace {

struct Queued {
  Message message;
  std::string path;  // of a dropped file
};

std::deque<Queued> queue;
std::string droppedfile;
std::set<int> disabled{MessageMouseUp, MessageMouseMove};
bool busy = false;
bool stopped = false;  // the user wants the present command to stop
int reports = 0;       // since the last message
ApplicationHooks hooks;

void ShowBusy(bool now) {
  if (now == busy) return;
  busy = now;
  frontend::SetBusy(now);
}

bool StartsCommand(int type) {
  return type == MessageMenu || type == MessageButton || type == MessageFileDropped;
}

}  // namespace

PauseBusy::PauseBusy() : was_(busy) { ShowBusy(false); }
PauseBusy::~PauseBusy() { ShowBusy(was_); }

void WInitialise(int argc, char** argv) {
  frontend::Initialise(argc, argv);
  KeepArguments(argc, argv);
}

int WMessage(Message& data) {
  ShowBusy(false);
  stopped = false;
  reports = 0;
  for (;;) {
    while (queue.empty()) {
      ShowDrawing();
      frontend::WaitEvent();
    }
    const Queued next = std::move(queue.front());
    queue.pop_front();
    if (disabled.contains(next.message.type)) continue;
    data = next.message;
    if (data.type == MessageFileDropped) droppedfile = next.path;
    JournalMessage(data);
    ShowBusy(StartsCommand(data.type));
    return data.type;
  }
}

void WMessageEnable(int type, int on) {
  if (on)
    disabled.erase(type);
  else
    disabled.insert(type);
}

void PostMessage(const Message& message) { queue.push_back({message, ""}); }

void PostFileDropped(const std::string& path) {
  RememberDirectory(path);
  queue.push_back({{.type = MessageFileDropped, .window = RootWindow}, path});
}

std::string WInfoDroppedFile() { return droppedfile; }

void WKeepAlive() {
  ShowDrawing();
  frontend::KeepAlive();
}

bool WProgress(int part, const std::string& text, std::optional<float> done) {
  ShowBusy(true);
  ShowDrawing();
  ++reports;
  if (!frontend::Progress(part, text, done) && !stopped) {
    stopped = true;
    JournalStop(reports);
  }
  KeepStatusText(part, text, true);
  return !stopped;
}

void WCommandEnded(bool failed) {
  stopped = false;
  ForgetComplaint();
  frontend::CommandEnded(failed);
}

void SetApplicationHooks(ApplicationHooks given) { hooks = std::move(given); }
const ApplicationHooks& Hooks() { return hooks; }
