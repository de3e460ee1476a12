#include "window_shot.h"

// clang-format off
#include <initguid.h>
#include <wincodec.h>
// clang-format on

#include <utility>
#include <vector>

namespace {

template <typename Interface>
class ComRef {
 public:
  ComRef() = default;
  ~ComRef() {
    if (pointer_ != nullptr) pointer_->Release();
  }
  ComRef(const ComRef&) = delete;
  ComRef& operator=(const ComRef&) = delete;
  Interface* operator->() const { return pointer_; }
  Interface* get() const { return pointer_; }
  Interface** out() { return &pointer_; }

 private:
  Interface* pointer_ = nullptr;
};

// 24-bit rows, each padded to four bytes, as the encoder takes them.
bool EncodePng(const std::wstring& path, int width, int height, BYTE* pixels) {
  ComRef<IWICImagingFactory> factory;
  ComRef<IWICStream> stream;
  ComRef<IWICBitmapEncoder> encoder;
  ComRef<IWICBitmapFrameEncode> frame;
  UINT stride = (static_cast<UINT>(width) * 3 + 3) & ~3u;
  WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
  return SUCCEEDED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                    IID_IWICImagingFactory,
                                    reinterpret_cast<void**>(factory.out()))) &&
         SUCCEEDED(factory->CreateStream(stream.out())) &&
         SUCCEEDED(stream->InitializeFromFilename(path.c_str(), GENERIC_WRITE)) &&
         SUCCEEDED(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.out())) &&
         SUCCEEDED(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache)) &&
         SUCCEEDED(encoder->CreateNewFrame(frame.out(), nullptr)) &&
         SUCCEEDED(frame->Initialize(nullptr)) &&
         SUCCEEDED(frame->SetSize(static_cast<UINT>(width), static_cast<UINT>(height))) &&
         SUCCEEDED(frame->SetPixelFormat(&format)) && format == GUID_WICPixelFormat24bppBGR &&
         SUCCEEDED(frame->WritePixels(static_cast<UINT>(height), stride,
                                      stride * static_cast<UINT>(height), pixels)) &&
         SUCCEEDED(frame->Commit()) && SUCCEEDED(encoder->Commit());
}

// The screen's pixels in `bounds`, as 24-bit rows padded to four bytes; empty on failure.
std::vector<BYTE> ReadScreen(const RECT& bounds) {
  const int width = bounds.right - bounds.left;
  const int height = bounds.bottom - bounds.top;
  HDC screen = GetDC(nullptr);
  HDC memory = CreateCompatibleDC(screen);
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;  // top row first
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 24;
  info.bmiHeader.biCompression = BI_RGB;
  void* pixels = nullptr;
  HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
  std::vector<BYTE> copy;
  if (bitmap != nullptr) {
    HGDIOBJ previous = SelectObject(memory, bitmap);
    if (BitBlt(memory, 0, 0, width, height, screen, bounds.left, bounds.top, SRCCOPY) &&
        GdiFlush()) {
      const size_t stride = (static_cast<size_t>(width) * 3 + 3) & ~size_t{3};
      const BYTE* first = static_cast<const BYTE*>(pixels);
      copy.assign(first, first + stride * static_cast<size_t>(height));
    }
    SelectObject(memory, previous);
    DeleteObject(bitmap);
  }
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return copy;
}

}  // namespace

bool SaveWindowPng(HWND window, const std::wstring& path) {
  // What still waits to be painted is painted now, by the window's own thread. Nothing is
  // invalidated: an erased window would have to be painted again before the picture.
  RedrawWindow(window, nullptr, nullptr, RDW_ALLCHILDREN | RDW_UPDATENOW);
  RECT bounds{};
  GetWindowRect(window, &bounds);
  int width = bounds.right - bounds.left;
  int height = bounds.bottom - bounds.top;
  if (width <= 0 || height <= 0) return false;
  // What lies off the screen cannot be read from it (the picture would come out black).
  RECT screenBounds{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
  RECT onScreen{};
  if (!IntersectRect(&onScreen, &bounds, &screenBounds) || !EqualRect(&onScreen, &bounds)) {
    return false;
  }
  // Wine hands a window's painting to the X server a little later, in pieces: a picture read
  // too early shows a window half erased. The screen has settled when two reads a moment apart
  // agree.
  std::vector<BYTE> pixels = ReadScreen(bounds);
  for (int attempt = 0; attempt < 40 && !pixels.empty(); ++attempt) {
    Sleep(75);
    std::vector<BYTE> again = ReadScreen(bounds);
    const bool settled = again == pixels;
    pixels = std::move(again);
    if (settled) break;
  }
  if (pixels.empty()) return false;
  HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const bool saved = EncodePng(path, width, height, pixels.data());
  if (SUCCEEDED(com)) CoUninitialize();
  return saved;
}
