/* dovetally [-v] [FILE...]: counts how often each word stands in the files. */
#include "version.h"
#include "words.h"

#include <stdlib.h>
#include <string.h>

struct entry {
	char word[WORD_SIZE];
	long count;
};

static struct entry *entries;
static size_t used, room;

static void add(const char *word)
{
	if (used == room) {
		room = room ? 2 * room : 256;
		entries = realloc(entries, room * sizeof *entries);
		if (!entries) {
			fputs("dovetally: out of memory\n", stderr);
			exit(1);
		}
	}
	strcpy(entries[used].word, word);
	entries[used++].count = 1;
}

static void add_all(FILE *in)
{
	char word[WORD_SIZE];

	while (next_word(in, word))
		add(word);
}

static int by_word(const void *a, const void *b)
{
	return strcmp(((const struct entry *)a)->word, ((const struct entry *)b)->word);
}

static int by_count(const void *a, const void *b)
{
	const struct entry *x = a, *y = b;

	return x->count != y->count ? (x->count < y->count ? 1 : -1) : by_word(a, b);
}

/* Joins equal words, which stand side by side once sorted. */
static void join(void)
{
	size_t from, to = 0;

	for (from = 1; from < used; from++) {
		if (strcmp(entries[to].word, entries[from].word) == 0)
			entries[to].count++;
		else
			entries[++to] = entries[from];
	}
	used = to + 1;
}

int main(int argc, char **argv)
{
	size_t i;
	int status = 0;

	if (argc > 1 && strcmp(argv[1], "-v") == 0) {
		puts("dovetally " VERSION);
		return 0;
	}
	if (argc == 1)
		add_all(stdin);
	while (*++argv) {
		FILE *in = fopen(*argv, "r");

		if (!in) {
			perror(*argv);
			status = 1;
			continue;
		}
		add_all(in);
		fclose(in);
	}
	if (used == 0)
		return status;

	qsort(entries, used, sizeof *entries, by_word);
	join();
	qsort(entries, used, sizeof *entries, by_count);
	for (i = 0; i < used; i++)
		printf("%7ld %s\n", entries[i].count, entries[i].word);
	return status;
}
