#include "words.h"

#include <ctype.h>

int next_word(FILE *in, char word[WORD_SIZE])
{
	int c, length = 0;

	while ((c = getc(in)) != EOF) {
		if (isalpha(c)) {
			if (length < WORD_SIZE - 1)
				word[length++] = (char)tolower(c);
		} else if (length > 0) {
			break;
		}
	}
	word[length] = '\0';
	return length > 0;
}
