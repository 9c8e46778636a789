#include "BoxAnswerer.h"

namespace e2e
{
BoxAnswerer::BoxAnswerer(std::wstring press)
    : thread_([this, press] {
          for (int i = 0; i < 500 && !done_; ++i) {
              for (const WindowInfo& window : ListTopLevelWindows(::GetCurrentProcessId(), true)) {
                  if (!window.IsDialog())
                      continue;
                  seen_ = window;
                  for (const ButtonInfo& button : window.buttons)
                      if (StripAccelerator(button.caption) == press)
                          PressButton(window.hwnd, button);
                  done_ = true;
                  return;
              }
              ::Sleep(20);
          }
      })
{
}

const WindowInfo& BoxAnswerer::Join()
{
    if (thread_.joinable())
        thread_.join();
    return seen_;
}
}
