// What commands ask while the user looks at the plot.
#include "plot/beside.h"

#include <optional>

#include "plot/navigation.h"
#include "plot/plot.h"
#include "plot/zoomhistory.h"

namespace {

DataPoint reach;

void SetReach() { reach = {(ws.viewxmax - ws.viewxmin) / 200, (ws.viewymax - ws.viewymin) / 200}; }

// Does what the user's hand asks of the view; true if that was meant.
bool Zoom(const Message& message) {
  const ZoomView before = ViewNow();
  const bool press = message.type == MessageMouseDown && message.value1 == MouseLeft;
  const bool meant = press ? DrawBand(message, true) : Navigate(message);
  if (!SamePicture(before, ViewNow())) SetReach();
  return meant;
}

}  // namespace

DataPoint PickReach() { return reach; }

bool AskOnPlot(const std::string& caption, const std::string& text) {
  RefreshView();
  return MessageBoxQuery(caption, text) == 1;
}

int RunBeside(int dialog, const std::function<bool(const Message&)>& handler) {
  std::optional<PatternData> beforeclick;  // the last thing that the handler has heard of
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
      case MessageExpose:
      case MessageResize:
        ShowComplaint(DrawView());
        break;
      case MessageDoubleClick:
        if (beforeclick) static_cast<PatternData&>(ws) = *beforeclick;
        beforeclick.reset();
        handler(message);
        [[fallthrough]];
      case MessageMouseMove:
      case MessageWheel:
      case MessagePan:
      case MessageKey:
        Zoom(message);
        break;
      case MessageMouseDown:
        if (Zoom(message)) {
          beforeclick.reset();
          break;
        }
        [[fallthrough]];
      case MessageButton:
      case MessageFieldChanged:
        beforeclick.reset();
        if (message.type == MessageMouseDown) beforeclick = ws;
        if (!handler(message)) {
          WDialogHide();
          return message.type == MessageButton ? message.value1 : 0;
        }
        // Of a click that has opened another pattern nothing is taken back.
        if (beforeclick && beforeclick->loadcount != ws.loadcount) beforeclick.reset();
        RefreshView();
        NoteZoom();
    }
  }
}
