// What commands ask while the user looks at the plot.
#include "plot/beside.h"

#include <optional>

#include "plot/navigation.h"
#include "plot/plot.h"
#include "plot/zoomhistory.h"

namespace {

DataPoint reach;

void SetReach() { reach = {(ws.viewxmax - ws.viewxmin) / 200, (ws.viewymax - ws.viewymin) / 200}; }

}  // namespace

DataPoint PickReach() { return reach; }

bool AskOnPlot(const std::string& caption, const std::string& text) {
  RefreshView();
  return MessageBoxQuery(caption, text) == 1;
}

int RunBeside(int dialog, const std::function<bool(const Message&)>& handler) {
  std::optional<PatternData> beforeclick;  // while nothing has come behind it
  SetReach();
  WDialogSelect(dialog);
  WDialogShow(-1, -1, 0, SemiModeless);
  for (;;) {
    Message message;
    switch (WMessage(message)) {
      case MessageClose:
        PostMessage(message);
        WDialogHide();
        return ButtonCancel;
      case MessageMouseMove:
        Navigate(message);
        break;
      case MessageExpose:
      case MessageResize:
        ShowComplaint(DrawView());
        break;
      case MessageDoubleClick:
        if (beforeclick) static_cast<PatternData&>(ws) = *beforeclick;
        handler(message);
        [[fallthrough]];
      case MessageWheel:
      case MessagePan:
      case MessageKey:
        beforeclick.reset();
        if (Navigate(message)) SetReach();
        break;
      case MessageMouseDown:
        if (message.value1 == MouseLeft && DrawBand(message, true)) {
          beforeclick.reset();
          SetReach();
          break;
        }
        beforeclick = ws;
        [[fallthrough]];
      case MessageButton:
      case MessageFieldChanged:
        if (!handler(message)) {
          WDialogHide();
          return message.type == MessageButton ? message.value1 : 0;
        }
        RefreshView();
        NoteZoom();
    }
  }
}
