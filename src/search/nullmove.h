// The null move: passing the turn, for null-move pruning.
#pragma once

// Passes the turn and marks the search line; an en-passant right is gone with it.
void MakeNullMove();

// Takes the null move back and the mark with it.
void UnMakeNullMove();
