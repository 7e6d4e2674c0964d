/*
 * tidebell FILE [SECONDS]: waits until FILE appears, changes or goes, and rings the bell.
 * Ends with status 1 when nothing happened within SECONDS.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

/* All 0 for a file that is not there. */
static struct stat look(const char *path)
{
	struct stat found;

	if (stat(path, &found) != 0)
		memset(&found, 0, sizeof found);
	return found;
}

static int differ(const struct stat *a, const struct stat *b)
{
	return a->st_ino != b->st_ino || a->st_size != b->st_size || a->st_mtime != b->st_mtime;
}

int main(int argc, char **argv)
{
	struct stat before, now;
	int forever = argc == 2;
	long left;

	if (argc != 2 && argc != 3) {
		fputs("usage: tidebell FILE [SECONDS]\n", stderr);
		return 2;
	}
	before = look(argv[1]);
	for (left = forever ? 1 : atol(argv[2]); left > 0; left -= !forever) {
		sleep(1);
		now = look(argv[1]);
		if (differ(&before, &now)) {
			printf("\a%s changed\n", argv[1]);
			return 0;
		}
	}
	return 1;
}
