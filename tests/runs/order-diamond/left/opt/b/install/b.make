include b.dat
for-d:
	@echo "b after $(IS-D_NAME)"
