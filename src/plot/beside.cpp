// What commands ask while the user looks at the plot.
#include "plot/beside.h"

#include "plot/dataposition.h"
#include "plot/plot.h"

bool AskOnPlot(const std::string& caption, const std::string& text) {
  RefreshView();
  return MessageBoxQuery(caption, text) == 1;
}

int RunBeside(int dialog, const std::function<bool(const Message&)>& handler) {
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
        ShowReadOuts(ToData(message.x, message.y));
        break;
      case MessageExpose:
      case MessageResize:
        ShowComplaint(DrawView());
        break;
      case MessageButton:
      case MessageFieldChanged:
      case MessageMouseDown:
        if (!handler(message)) {
          WDialogHide();
          return message.type == MessageButton ? message.value1 : 0;
        }
        RefreshView();
    }
  }
}
