#include "window_shot.h"

// clang-format off
#include <initguid.h>
#include <wincodec.h>
// clang-format on

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

}  // namespace

bool SaveWindowPng(HWND window, const std::wstring& path) {
  // Painted now, by the window's own thread, before the screen is read.
  RedrawWindow(window, nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
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
  HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
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
  bool saved = false;
  if (bitmap != nullptr) {
    HGDIOBJ previous = SelectObject(memory, bitmap);
    saved = BitBlt(memory, 0, 0, width, height, screen, bounds.left, bounds.top, SRCCOPY) &&
            GdiFlush() && EncodePng(path, width, height, static_cast<BYTE*>(pixels));
    SelectObject(memory, previous);
    DeleteObject(bitmap);
  }
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  if (SUCCEEDED(com)) CoUninitialize();
  return saved;
}
