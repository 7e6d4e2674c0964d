/*
 * kelstone put FILE KEY VALUE | get FILE KEY | list FILE: a store in a hashed file.
 *
 * The file begins with the offset of the newest record of each chain, 0 where there is none.
 * Records are only appended, each with the offset of the next older one of its chain, so a key's
 * newest value is met first.
 */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { CHAINS = 256, MAX_LENGTH = 4095 };

struct record {
	uint32_t older, key_length, value_length;
};

static FILE *file;
static uint32_t heads[CHAINS];
static char key[MAX_LENGTH + 1], value[MAX_LENGTH + 1];

static void fail(const char *why)
{
	fprintf(stderr, "kelstone: %s\n", why);
	exit(1);
}

static uint32_t chain_of(const char *text)
{
	uint32_t hash = 2166136261u;

	while (*text)
		hash = (hash ^ (unsigned char)*text++) * 16777619u;
	return hash % CHAINS;
}

static void open_store(const char *path, const char *mode)
{
	file = fopen(path, mode);
	if (!file && mode[0] == 'r' && mode[1] == '+')
		file = fopen(path, "w+");
	if (!file) {
		perror(path);
		exit(1);
	}
	if (fread(heads, sizeof heads, 1, file) != 1 && (ferror(file) || ftell(file) > 0))
		fail("not a store");
}

/* Reads the record at an offset into key and value. Returns the offset of the next older one. */
static uint32_t read_record(uint32_t at)
{
	struct record r;

	if (fseek(file, (long)at, SEEK_SET) != 0 || fread(&r, sizeof r, 1, file) != 1 ||
	    r.older >= at || r.key_length > MAX_LENGTH || r.value_length > MAX_LENGTH ||
	    fread(key, 1, r.key_length, file) != r.key_length ||
	    fread(value, 1, r.value_length, file) != r.value_length)
		fail("the store is damaged");
	key[r.key_length] = value[r.value_length] = '\0';
	return r.older;
}

/* Returns the offset of a key's newest record, which is in key and value then, or 0. */
static uint32_t find(const char *wanted)
{
	uint32_t at = heads[chain_of(wanted)], older;

	for (; at != 0; at = older) {
		older = read_record(at);
		if (strcmp(key, wanted) == 0)
			break;
	}
	return at;
}

static void put(const char *new_key, const char *new_value)
{
	uint32_t *head = &heads[chain_of(new_key)];
	struct record r = {*head, (uint32_t)strlen(new_key), (uint32_t)strlen(new_value)};
	long end;

	if (r.key_length > MAX_LENGTH || r.value_length > MAX_LENGTH)
		fail("key or value too long");
	fseek(file, 0, SEEK_END);
	end = ftell(file);
	if (end == 0)
		end = sizeof heads;
	if (end < 0 || end > INT32_MAX)
		fail("the store is full");
	*head = (uint32_t)end;
	fseek(file, end, SEEK_SET);
	fwrite(&r, sizeof r, 1, file);
	fwrite(new_key, 1, r.key_length, file);
	fwrite(new_value, 1, r.value_length, file);
	rewind(file);
	fwrite(heads, sizeof heads, 1, file);
	if (ferror(file) | fclose(file))
		fail("cannot write the store");
}

static void list(void)
{
	int chain;

	for (chain = 0; chain < CHAINS; chain++) {
		uint32_t at = heads[chain], older;

		for (; at != 0; at = older) {
			char this_key[MAX_LENGTH + 1];

			older = read_record(at);
			strcpy(this_key, key);
			if (find(this_key) == at)
				printf("%s\t%s\n", key, value);
		}
	}
}

int main(int argc, char **argv)
{
	if (argc == 5 && strcmp(argv[1], "put") == 0) {
		open_store(argv[2], "r+b");
		put(argv[3], argv[4]);
	} else if (argc == 4 && strcmp(argv[1], "get") == 0) {
		open_store(argv[2], "rb");
		if (find(argv[3]) == 0)
			return 1;
		puts(value);
	} else if (argc == 3 && strcmp(argv[1], "list") == 0) {
		open_store(argv[2], "rb");
		list();
	} else {
		fputs("usage: kelstone put FILE KEY VALUE\n"
		      "       kelstone get FILE KEY\n"
		      "       kelstone list FILE\n", stderr);
		return 2;
	}
	return 0;
}
