/* Reading the words of a text. */
#ifndef WORDS_H
#define WORDS_H

#include <stdio.h>

enum { WORD_SIZE = 64 };

/* Reads the next word, in lower case and cut to WORD_SIZE - 1 letters. Returns 0 at the end. */
int next_word(FILE *in, char word[WORD_SIZE]);

#endif
