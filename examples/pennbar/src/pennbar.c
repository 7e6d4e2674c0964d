/*
 * pennbar WORD...: writes the words in large letters. FONT is a file of lines that hold a letter
 * and its five rows; a line that begins with "! " is a comment.
 */
#include <ctype.h>
#include <stdio.h>
#include <string.h>

enum { ROWS = 5, COLUMNS = 3 };

static char glyphs[256][ROWS][COLUMNS + 1];

static int read_font(void)
{
	char line[128], letter, rows[ROWS][COLUMNS + 1];
	FILE *in = fopen(FONT, "r");

	if (!in) {
		perror(FONT);
		return 0;
	}
	while (fgets(line, sizeof line, in)) {
		if (sscanf(line, "%c %3s %3s %3s %3s %3s", &letter, rows[0], rows[1], rows[2],
		           rows[3], rows[4]) == 1 + ROWS && letter != '!')
			memcpy(glyphs[(unsigned char)letter], rows, sizeof rows);
	}
	fclose(in);
	return 1;
}

/* A letter that the font lacks is written as its capital, or as a blank. */
static const char *row_of(unsigned char letter, int row)
{
	if (!glyphs[letter][row][0])
		letter = (unsigned char)toupper(letter);
	return glyphs[letter][row][0] ? glyphs[letter][row] : "...";
}

static void write_word(const char *word)
{
	int row;
	const char *letter, *dot;

	for (row = 0; row < ROWS; row++) {
		for (letter = word; *letter; letter++) {
			for (dot = row_of((unsigned char)*letter, row); *dot; dot++)
				putchar(*dot == '#' ? '#' : ' ');
			putchar(' ');
		}
		putchar('\n');
	}
}

int main(int argc, char **argv)
{
	if (argc < 2) {
		fputs("usage: pennbar WORD...\n", stderr);
		return 2;
	}
	if (!read_font())
		return 1;
	while (*++argv) {
		write_word(*argv);
		if (argv[1])
			putchar('\n');
	}
	return 0;
}
