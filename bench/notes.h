#pragma once

/// Makes a history with a run that told so many notes, looks through them as the window does, and prints how long each
/// step takes and the memory, beside those of a twentieth of the notes. Returns false when a filter takes more than 0.2
/// seconds or memory grows with the notes.
/// @param folder is emptied and filled
bool MeasureNotes(const char* folder, long notes);
