#include "afxwin.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE previous, LPWSTR commandLine, int show)
{
    return ::AfxWinMain(instance, previous, commandLine, show);
}
