include base.dat
for-c:
	@echo "base after $(IS-C_NAME)"
