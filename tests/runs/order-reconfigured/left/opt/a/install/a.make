include a.dat
for-b:
	@echo "a after $(IS-B_NAME)"
