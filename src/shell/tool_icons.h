#pragma once

#include <QCursor>
#include <QIcon>
#include <QPixmap>
#include <string>
#include <vector>

// Pictures of the window, painted as lines so that they are sharp at any size.
namespace orv {

// The keys of the toolbar in its order.
const std::vector<std::string>& ToolIconKeys();

// Icon of a key of the toolbar, also of those that no button bears, and of "demo"; a null icon for other keys. It takes
// the text colour of the palette in force when it is shown.
QIcon ToolIcon(const std::string& key);

inline constexpr int kFirstCursorPicture = 200;
inline constexpr int kLastCursorPicture = 212;
inline constexpr int kCursorSide = 32;  // logical pixels

// Picture of a drawn cursor, dark with a light border; null for other numbers.
QPixmap CursorPicture(int number, double deviceRatio);

// The pointer of a number: 0 the arrow, 11 busy, 200 to 212 the drawn ones; other numbers are the arrow.
QCursor ViewCursor(int number, double deviceRatio);

}  // namespace orv
